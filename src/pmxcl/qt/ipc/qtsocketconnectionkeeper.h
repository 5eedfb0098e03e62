#pragma once

#include "qtabstractserveraddress.h"
#include "qtabstractsocket.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>
#include <QSharedPointer>

#include <memory>
#include <optional>

/**
 * Keeps a socket connected while it is enabled: connects, and reconnects after a failed attempt or
 * the end of a connection, with exponential backoff from the minimum to the maximum delay. A
 * connection that lasted at least 3 seconds resets the backoff. Belongs to the socket's thread.
 */
class QtSocketConnectionKeeper : public QObject {
    Q_OBJECT
public:
    explicit QtSocketConnectionKeeper(QSharedPointer<QtAbstractSocket> socket,
                                      QObject *parent = nullptr,
                                      QtClock &clock = QtClock::system());

    /// With an empty address, the initial value, nothing is connected.
    void setServerAddress(const QtAbstractServerAddress &address);
    /// Milliseconds, initially 300 and 3000. Ignored if min is negative or greater than max; a max
    /// of 0 becomes 1.
    void setRetryInterval(int min, int max);

    void enable(bool enable);
    bool isEnabled() const { return m_enabled; }
    bool isOkToConnect() const;
    void connect();
    /// Connects now, instead of after the current delay, and resets the backoff.
    void forceConnect();

public Q_SLOTS:
    void onSocketStateChanged();
    void onScheduledReconnect();
    /// The proxy's credentials were provided; no attempt was made since the proxy required them.
    void onGotProxyAuth();

private:
    void scheduleReconnect();
    bool isProxyAuthError() const;

    const QSharedPointer<QtAbstractSocket> m_socket;
    QtClock &m_clock;
    bool m_enabled = false;
    QtAbstractServerAddress m_serverAddress;
    int m_minRetryInterval = 300;
    int m_currentRetryInterval = 300;
    int m_maxRetryInterval = 3000;
    /// The start of the connection, on the monotonic clock; empty while there is none.
    std::optional<qint64> m_connectedSince;
    const std::unique_ptr<QtSingleShotTimer> m_reconnectTimer;
};
