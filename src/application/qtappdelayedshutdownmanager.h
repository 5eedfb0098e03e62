#pragma once

#include <QObject>
#include <QSet>
#include <QString>

/**
 * Ends the program's event loop once a shutdown was requested and no registered object delays it.
 *
 * Belongs to the main thread; other threads use shutdownAppQueued() or queued signals.
 * There is no time-out: an object that is registered and neither unregistered nor destroyed keeps
 * the program running.
 */
class QtAppDelayedShutdownManager : public QObject {
    Q_OBJECT
public:
    explicit QtAppDelayedShutdownManager(QObject *parent = nullptr);

    /// Registers an object that delays the shutdown (true) or unregisters it (false); destroying
    /// the object unregisters it, too. Registering twice counts once. Unregistering disconnects the
    /// object's signals from this manager.
    void registerObject(QObject *object, bool hold);
    /// Calls shutdownApp() from the event loop. Any thread, and from inside any handler.
    void shutdownAppQueued(const QString &reason);
    /// The reason of the first request; empty before.
    QString shutdownReason() const { return m_shutdownReason; }

public Q_SLOTS:
    /// Requests the shutdown. Only the first call counts.
    void shutdownApp(const QString &reason);
    /// To be connected to a signal; the reason is the sender's object name.
    void shutdownAppViaConnection();
    void onEventLoopStarted();
    void onObjectDestroyed(QObject *object);

Q_SIGNALS:
    /// The shutdown was requested: finish pending work, then unregister.
    void shutdownRequested();
    /// The event loop is about to be left.
    void readyToQuit();

private:
    void tryCallQuit();

    bool m_eventLoopStarted = false;
    bool m_shutdownRequested = false;
    bool m_quitCalled = false;
    QSet<QObject *> m_registeredObjects;
    QString m_shutdownReason;
};
