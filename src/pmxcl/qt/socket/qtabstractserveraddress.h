#pragma once

#include <QHostAddress>
#include <QString>

/// The address of a server, of one of four kinds. The program itself uses local server names.
class QtAbstractServerAddress {
public:
    enum Kind {
        LocalServerName = 0,
        NumericId = 1,
        HostAddressAndPort = 2,
        HostNameAndPort = 3,
    };

    explicit QtAbstractServerAddress(const QString &localServerName);
    explicit QtAbstractServerAddress(qint64 numericId);
    QtAbstractServerAddress(const QHostAddress &hostAddress, quint16 port);
    /// The meaning of the extra string depends on the transport.
    QtAbstractServerAddress(const QString &hostName, quint16 port, const QString &extra);

    int kind() const { return m_kind; }
    const QString &localServerName() const { return m_localServerName; }
    qint64 numericId() const { return m_numericId; }
    const QHostAddress &hostAddress() const { return m_hostAddress; }
    const QString &hostName() const { return m_hostName; }
    quint16 port() const { return m_port; }
    const QString &extra() const { return m_extra; }

    /// Whether the field that names the server is missing.
    bool isEmpty() const;

private:
    int m_kind;
    QString m_localServerName;
    qint64 m_numericId = 0;
    QHostAddress m_hostAddress;
    QString m_hostName;
    quint16 m_port = 0;
    QString m_extra;
};
