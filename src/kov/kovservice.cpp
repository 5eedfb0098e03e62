#include "kovservice.h"

#include "appdataaccesshelper.h"
#include "applink.h"
#include "kovcommands.h"
#include "kovdownloadsqueue.h"
#include "kovnotifications.h"
#include "kovsettings.h"
#include "kovunits.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappconfigbase.h"
#include "qtappdefaultlogger.h"
#include "qtappportablemodesupport.h"

#include <QElapsedTimer>
#include <QLocalSocket>
#include <QThread>

#include <algorithm>
#include <utility>

namespace {

/// A week; QTimer's limit is 24 days.
constexpr int maxIdleMinutes = 7 * 24 * 60;
constexpr int connectTimeoutMs = 1000;
constexpr int lockRetryMs = 50;
/// The listen backlog. Clients that find it full retry in a busy loop.
constexpr int waitingConnections = 256;

QString lockPath(const QtAppConfigBase &config)
{
    return config.dataDir().filePath(QStringLiteral("kov.lock"));
}

} // namespace

KovService::KovService(const QtAppConfigBase &config,
                       const QSharedPointer<QtAppPortableModeSupport> &portableModeSupport,
                       QString serverName, QObject *parent, QtClock &clock)
    : QObject(parent), m_serverName(std::move(serverName)), m_clock(clock),
      m_storePath(config.dataDir().filePath(QStringLiteral("downloads.sqlite"))),
      m_stopTimer(clock.createTimer()), m_idleTimer(clock.createTimer()), m_lock(lockPath(config)),
      m_dataAccess(
          QSharedPointer<AppDataAccessHelper>::create(config.dataDir(), portableModeSupport)),
      m_portableModeSupport(portableModeSupport)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.setListenBacklogSize(waitingConnections);
    connect(&m_server, &QLocalServer::newConnection, this, &KovService::onNewConnection);
    connect(m_stopTimer.get(), &QtSingleShotTimer::timeout, this, &KovService::stopped);
    connect(m_idleTimer.get(), &QtSingleShotTimer::timeout, this, &KovService::stop);
}

KovService::~KovService() = default;

KovService::StartResult KovService::start()
{
    const StartResult claimed = claimService();
    if (claimed != StartResult::Serving)
        return claimed;

    m_services.settings = m_dataAccess->settings();
    m_services.settings->setDefaultValue(KovSettings::endsWhenIdleMinutes(),
                                         KovSettings::defaultEndsWhenIdleMinutes());
    m_services.queue = QSharedPointer<KovDownloadsQueue>::create(
        m_services.settings, m_portableModeSupport, m_storePath, nullptr, m_clock);
    m_notifications = std::make_unique<KovNotifications>(m_services.settings, m_services.queue);
    m_services.commands =
        QSharedPointer<KovCommands>::create(m_services.settings, m_services.queue);
    connect(m_services.commands.data(), &KovCommands::quitRequested, this, &KovService::stop,
            Qt::QueuedConnection);
    connect(m_services.queue.data(), &KovDownloadsQueue::workChanged, this,
            &KovService::onWorkChanged);
    connect(m_services.queue.data(), &KovDownloadsQueue::stopped, this, [this] {
        m_queueStopped = true;
        checkStopped();
    });
    const StartResult listening = listen();
    if (listening == StartResult::Serving)
        m_services.queue->start();
    onWorkChanged();
    return listening;
}

KovService::StartResult KovService::claimService()
{
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        switch (m_lock.tryLock()) {
        case KovInstanceLock::Result::Locked:
            return StartResult::Serving;
        case KovInstanceLock::Result::Failed:
            m_error = m_lock.errorString();
            return StartResult::Failed;
        case KovInstanceLock::Result::HeldByAnother:
            break;
        }
        if (anotherAccepts())
            return StartResult::AnotherServes;
        if (waited.hasExpired(otherInstanceTimeoutMs)) {
            m_error = QStringLiteral("another instance neither serves nor ends");
            return StartResult::Failed;
        }
        QThread::msleep(lockRetryMs);
    }
}

KovService::StartResult KovService::listen()
{
    // No service runs on this data folder; one with another folder may still use the name.
    if (anotherAccepts())
        return StartResult::AnotherServes;
    QLocalServer::removeServer(m_serverName);
    if (m_server.listen(m_serverName)) {
        logLine(1, QStringLiteral("[KovService]: serving at %1").arg(m_server.fullServerName()));
        return StartResult::Serving;
    }
    m_error =
        QStringLiteral("cannot serve at \"%1\": %2").arg(m_serverName, m_server.errorString());
    return StartResult::Failed;
}

bool KovService::anotherAccepts() const
{
    return isOwnServerListening(m_serverName, connectTimeoutMs);
}

void KovService::onNewConnection()
{
    while (QLocalSocket *const accepted = m_server.nextPendingConnection()) {
        accepted->setParent(nullptr);
        const QSharedPointer<QLocalSocket> socket(accepted, &QObject::deleteLater);
        auto *const connection = new KovConnection(socket, m_services, this);
        m_connections.append(connection);
        onWorkChanged();
        connect(
            connection, &KovConnection::disconnected, this,
            [this, connection] { removeConnection(connection); }, Qt::QueuedConnection);
    }
}

void KovService::removeConnection(KovConnection *connection)
{
    if (!m_connections.removeOne(connection))
        return;
    connection->deleteLater();
    onWorkChanged();
    checkStopped();
}

void KovService::onWorkChanged()
{
    const int minutes = m_services.settings->value(KovSettings::endsWhenIdleMinutes()).toInt();
    const bool isIdle = m_connections.isEmpty() && !m_services.queue->hasWork();
    if (!isIdle || minutes <= 0 || m_stopping)
        m_idleTimer->stop();
    else if (!m_idleTimer->isActive())
        m_idleTimer->start(std::min(minutes, maxIdleMinutes) * millisecondsPerMinute);
}

void KovService::stop()
{
    if (std::exchange(m_stopping, true))
        return;
    logLine(1, QStringLiteral("[KovService]: stopping"));
    m_server.close();
    m_stopTimer->start(flushTimeoutMs);
    m_services.queue->stop();
    for (KovConnection *const connection : std::as_const(m_connections))
        connection->disconnectFromClient();
}

void KovService::checkStopped()
{
    if (m_stopping && m_queueStopped && m_connections.isEmpty())
        m_stopTimer->start(0);
}
