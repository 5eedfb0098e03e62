#include "qtabstractserveraddress.h"

QtAbstractServerAddress::QtAbstractServerAddress(const QString &localServerName)
    : m_kind(LocalServerName), m_localServerName(localServerName)
{
}

QtAbstractServerAddress::QtAbstractServerAddress(qint64 numericId)
    : m_kind(NumericId), m_numericId(numericId)
{
}

QtAbstractServerAddress::QtAbstractServerAddress(const QHostAddress &hostAddress, quint16 port)
    : m_kind(HostAddressAndPort), m_hostAddress(hostAddress), m_port(port)
{
}

QtAbstractServerAddress::QtAbstractServerAddress(const QString &hostName, quint16 port,
                                                 const QString &extra)
    : m_kind(HostNameAndPort), m_hostName(hostName), m_port(port), m_extra(extra)
{
}

bool QtAbstractServerAddress::isEmpty() const
{
    switch (m_kind) {
    case LocalServerName:
        return m_localServerName.isEmpty();
    case NumericId:
        return m_numericId == 0;
    case HostAddressAndPort:
        return m_hostAddress.isNull();
    case HostNameAndPort:
        return m_hostName.isEmpty();
    }
    return true;
}
