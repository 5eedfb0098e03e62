#include "qtsocketconnectionkeeper.h"

#include <QHostAddress>

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

/// A connection that lasted longer resets the backoff, in milliseconds.
constexpr qint64 shortConnection = 2999;
/// From this delay on, a coarse timer is enough, in milliseconds.
constexpr int maxPreciseWaitMs = 1999;

// The error code of sockets for a proxy that requires credentials.
constexpr std::string_view proxyAuthCategory = "QtAbstractSocketError";
constexpr int proxyAuthCode = 13;

} // namespace

QtSocketConnectionKeeper::QtSocketConnectionKeeper(QSharedPointer<QtAbstractSocket> socket,
                                                   QObject *parent, QtClock &clock)
    : QObject(parent), m_socket(std::move(socket)), m_clock(clock),
      m_serverAddress(QHostAddress(), 0), m_reconnectTimer(clock.createTimer())
{
    // Queued, so that all slots have seen the socket's state before it changes again.
    QObject::connect(m_socket.data(), &QtAbstractSocket::stateChanged, this,
                     &QtSocketConnectionKeeper::onSocketStateChanged, Qt::QueuedConnection);
    QObject::connect(m_reconnectTimer.get(), &QtSingleShotTimer::timeout, this,
                     &QtSocketConnectionKeeper::onScheduledReconnect);
}

void QtSocketConnectionKeeper::setServerAddress(const QtAbstractServerAddress &address)
{
    m_serverAddress = address;
}

void QtSocketConnectionKeeper::setRetryInterval(int min, int max)
{
    if (min < 0 || min > max)
        return;
    m_minRetryInterval = min;
    m_maxRetryInterval = std::max(max, 1);
    m_currentRetryInterval =
        std::clamp(m_currentRetryInterval, m_minRetryInterval, m_maxRetryInterval);
}

void QtSocketConnectionKeeper::enable(bool enable)
{
    if (m_enabled == enable)
        return;
    m_enabled = enable;
    if (enable && !m_socket->isConnected())
        forceConnect();
}

bool QtSocketConnectionKeeper::isOkToConnect() const
{
    return m_enabled && m_socket->state() == QtAbstractSocket::UnconnectedState
        && !m_serverAddress.isEmpty();
}

void QtSocketConnectionKeeper::connect()
{
    if (isOkToConnect())
        m_socket->connectToServer(m_serverAddress, QIODeviceBase::ReadWrite);
}

void QtSocketConnectionKeeper::forceConnect()
{
    m_currentRetryInterval = m_minRetryInterval;
    // A long delay that is already running must not postpone the next, short one.
    m_reconnectTimer->stop();
    connect();
}

void QtSocketConnectionKeeper::onSocketStateChanged()
{
    if (m_socket->state() == QtAbstractSocket::ConnectedState) {
        m_connectedSince = m_clock.monotonicMs();
        return;
    }
    if (m_connectedSince && m_clock.monotonicMs() - *m_connectedSince > shortConnection)
        m_currentRetryInterval = m_minRetryInterval;
    m_connectedSince.reset();
    if (isOkToConnect() && !isProxyAuthError())
        scheduleReconnect();
}

void QtSocketConnectionKeeper::onScheduledReconnect() { connect(); }

void QtSocketConnectionKeeper::onGotProxyAuth()
{
    if (isProxyAuthError())
        scheduleReconnect();
}

void QtSocketConnectionKeeper::scheduleReconnect()
{
    if (!m_enabled || m_reconnectTimer->isActive())
        return;
    if (m_currentRetryInterval == 0) {
        // Then the minimum is 0, too.
        m_currentRetryInterval = std::clamp(m_maxRetryInterval / 10, 1, 1000);
        connect();
        return;
    }
    const int wait = m_currentRetryInterval;
    m_currentRetryInterval = wait > m_maxRetryInterval / 2 ? m_maxRetryInterval : wait * 2;
    m_reconnectTimer->start(wait, wait > maxPreciseWaitMs ? Qt::CoarseTimer : Qt::PreciseTimer);
}

bool QtSocketConnectionKeeper::isProxyAuthError() const
{
    if (m_socket->state() != QtAbstractSocket::UnconnectedState)
        return false;
    const AbstractError error = m_socket->error();
    return error.category() == proxyAuthCategory && error.code() == proxyAuthCode;
}
