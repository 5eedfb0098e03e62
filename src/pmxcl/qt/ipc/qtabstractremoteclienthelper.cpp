#include "qtabstractremoteclienthelper.h"

#include "qtabstractserverlauncher.h"
#include "qtabstractsocket.h"
#include "qtautomaticserverlauncher.h"
#include "qtsocketconnectionkeeper.h"

#include <utility>

QtAbstractRemoteClientHelper::QtAbstractRemoteClientHelper(
    QSharedPointer<QtAbstractSocket> socket, QSharedPointer<QtSocketConnectionKeeper> keeper,
    const QSharedPointer<QtAbstractServerLauncher> &launcher, QObject *parent, QtClock &clock)
    : QObject(parent), m_socket(std::move(socket)), m_keeper(std::move(keeper)),
      m_automaticLauncher(
          launcher ? std::make_unique<QtAutomaticServerLauncher>(launcher, nullptr, clock)
                   : nullptr)
{
    if (!m_automaticLauncher)
        return;
    connect(m_socket.data(), &QtAbstractSocket::connectedStateChanged, m_automaticLauncher.get(),
            &QtAutomaticServerLauncher::onConnectedStateChanged);
    connect(m_automaticLauncher.get(), &QtAutomaticServerLauncher::launchServerFinished, this,
            &QtAbstractRemoteClientHelper::onLaunchServerFinished);
    m_automaticLauncher->onConnectedStateChanged(m_socket->isConnected());
}

QtAbstractRemoteClientHelper::~QtAbstractRemoteClientHelper() = default;

void QtAbstractRemoteClientHelper::enable(bool enable)
{
    if (m_enabled == enable)
        return;
    m_enabled = enable;
    applyEnabled();
}

void QtAbstractRemoteClientHelper::enableAutomaticServerLauncher(bool enable)
{
    m_automaticServerLauncherEnabled = enable;
    applyEnabled();
}

void QtAbstractRemoteClientHelper::applyEnabled()
{
    if (m_keeper)
        m_keeper->enable(m_enabled);
    if (m_automaticLauncher)
        m_automaticLauncher->enable(m_enabled && m_automaticServerLauncherEnabled);
}

void QtAbstractRemoteClientHelper::forceConnect()
{
    if (m_keeper)
        m_keeper->forceConnect();
}

void QtAbstractRemoteClientHelper::onLaunchServerFinished(const AbstractError &error)
{
    // A connection that was made meanwhile must not reset the keeper's back-off.
    if (m_enabled && !error.isError() && !m_socket->isConnected())
        forceConnect();
}
