#pragma once

#include <QObject>
#include <QSet>
#include <QString>

/**
 * Ends the program's event loop once that was requested and no registered object holds it back.
 *
 * Belongs to the main thread; other threads come through shutdownAppQueued() or queued signals.
 * There is no time-out: an object that is registered and neither unregistered nor destroyed keeps
 * the program running.
 */
class QtAppDelayedShutdownManager : public QObject {
    Q_OBJECT
public:
    explicit QtAppDelayedShutdownManager(QObject *parent = nullptr);

    /// Holds the end back (true), which its destruction ends too, or lets go (false). Registering
    /// twice counts once. Letting go breaks every connection from the object to this manager.
    void registerObject(QObject *object, bool hold);
    /// Calls shutdownApp() from the event loop. Any thread, and from inside any handler.
    void shutdownAppQueued(const QString &reason);
    /// Of the first request; empty before.
    QString shutdownReason() const { return m_shutdownReason; }

public Q_SLOTS:
    /// Asks for the end. Only the first call counts.
    void shutdownApp(const QString &reason);
    /// To be connected to a signal; the reason is the sender's object name.
    void shutdownAppViaConnection();
    void onEventLoopStarted();
    void onObjectDestroyed(QObject *object);

Q_SIGNALS:
    /// The time to finish what is under way and to let go.
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
