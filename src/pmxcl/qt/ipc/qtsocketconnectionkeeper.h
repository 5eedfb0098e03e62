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
 * Keeps a socket connected while it is enabled: connects, and when an attempt fails or a connection
 * ends tries again after a wait that doubles from the minimum to the maximum. A connection that
 * lasted at least 3 seconds starts the waits anew. Belongs to the socket's thread.
 */
class QtSocketConnectionKeeper : public QObject {
    Q_OBJECT
public:
    explicit QtSocketConnectionKeeper(QSharedPointer<QtAbstractSocket> socket,
                                      QObject *parent = nullptr,
                                      QtClock &clock = QtClock::system());

    /// An empty address, as at first, is never connected to.
    void setServerAddress(const QtAbstractServerAddress &address);
    /// Milliseconds, 300 and 3000 at first. Ignored when min is negative or more than max; a max of
    /// 0 becomes 1.
    void setRetryInterval(int min, int max);

    void enable(bool enable);
    bool isEnabled() const { return m_enabled; }
    bool isOkToConnect() const;
    void connect();
    /// Connects now and starts the waits anew, in place of one that is under way.
    void forceConnect();

public Q_SLOTS:
    void onSocketStateChanged();
    void onScheduledReconnect();
    /// The proxy's credentials were provided; no attempt was made since it asked for them.
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
    /// When the connection came up, on the monotonic clock; empty while there is none.
    std::optional<qint64> m_connectedSince;
    const std::unique_ptr<QtSingleShotTimer> m_reconnectTimer;
};
