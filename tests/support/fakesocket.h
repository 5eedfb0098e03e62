#pragma once

#include "qtabstractsocket.h"

#include <utility>

/// A socket that is in whatever state a test puts it, and counts the attempts to connect.
class FakeSocket : public QtAbstractSocket {
public:
    void connectToServer(const QtAbstractServerAddress &, QIODeviceBase::OpenMode) override
    {
        ++m_attempts;
        setState(ConnectingState);
        if (m_failing)
            setState(UnconnectedState);
    }
    void disconnectFromHost() override { setState(UnconnectedState); }
    void abort() override { setState(UnconnectedState); }
    QIODevice *ioDevice() const override { return nullptr; }
    bool isConnected() const override { return m_connected; }
    SocketState state() const override { return m_state; }
    AbstractError error() const override { return m_error; }

    void setState(SocketState state)
    {
        m_state = state;
        Q_EMIT stateChanged(state);
        if (const bool connected = state == ConnectedState; connected != m_connected) {
            m_connected = connected;
            Q_EMIT connectedStateChanged(connected);
        }
    }
    void setError(const AbstractError &error) { m_error = error; }
    /// Whether attempts fail at once; otherwise they stay under way.
    void setFailing(bool failing) { m_failing = failing; }
    /// How many attempts were made since this was last asked for.
    int takeAttempts() { return std::exchange(m_attempts, 0); }

private:
    SocketState m_state = UnconnectedState;
    bool m_connected = false;
    bool m_failing = true;
    int m_attempts = 0;
    AbstractError m_error;
};
