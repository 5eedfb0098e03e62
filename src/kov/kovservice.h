#pragma once

#include "kovconnection.h"
#include "kovinstancelock.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QList>
#include <QLocalServer>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <memory>

class AppDataAccessHelper;
class KovNotifications;
class QtAppConfigBase;
class QtAppPortableModeSupport;

/**
 * The application in service mode: serves the clients of one local socket.
 *
 * A lock in the data folder allows one instance per user, so that a stale socket file of a killed
 * service can be recognised and replaced. The service ends by itself when it had neither work nor
 * clients for a while (see KovSettings).
 */
class KovService : public QObject {
    Q_OBJECT
public:
    /// The support object may be null.
    KovService(const QtAppConfigBase &config,
               const QSharedPointer<QtAppPortableModeSupport> &portableModeSupport,
               QString serverName, QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~KovService() override;

    enum class StartResult { Serving, AnotherServes, Failed };
    /// When another instance holds the lock, waits until that one accepts connections or has ended,
    /// for up to otherInstanceTimeoutMs.
    StartResult start();
    /// Why it failed.
    QString errorString() const { return m_error; }

    /// Accepts no more clients, flushes the connections of the others, and stores the downloads.
    /// stopped() follows from the event loop, after flushTimeoutMs at the latest.
    void stop();

    static constexpr int otherInstanceTimeoutMs = 10'000;
    static constexpr int flushTimeoutMs = 2000;

Q_SIGNALS:
    void stopped();

private:
    StartResult claimService();
    StartResult listen();
    bool anotherAccepts() const;
    void onNewConnection();
    void removeConnection(KovConnection *connection);
    void onWorkChanged();
    void checkStopped();

    const QString m_serverName;
    QtClock &m_clock;
    const QString m_storePath;
    const std::unique_ptr<QtSingleShotTimer> m_stopTimer;
    const std::unique_ptr<QtSingleShotTimer> m_idleTimer;
    KovInstanceLock m_lock;
    const QSharedPointer<AppDataAccessHelper> m_dataAccess;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    QString m_error;
    KovConnection::Services m_services;
    std::unique_ptr<KovNotifications> m_notifications;
    QLocalServer m_server;
    QList<KovConnection *> m_connections;
    bool m_stopping = false;
    bool m_queueStopped = false;
};
