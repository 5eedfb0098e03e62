#include "qtabstractvhipcpart.h"

#include <utility>

QtAbstractVhIpcPart::QtAbstractVhIpcPart(QObject *parent) : QObject(parent) { }

void QtAbstractVhIpcPart::onConnectChanged(bool connected)
{
    m_connected = connected;
    m_maySendEncoded.reset();
}

void QtAbstractVhIpcPart::setReady(bool ready)
{
    if (m_ready == ready)
        return;
    m_ready = ready;
    Q_EMIT readyStateChanged(ready);
}

void QtAbstractVhIpcPart::setRequiringServer(bool requiring)
{
    if (m_requiringServer == requiring)
        return;
    m_requiringServer = requiring;
    Q_EMIT requiringServerChanged(requiring);
}

void QtAbstractVhIpcPart::setAcceptsEncoded(std::function<bool()> mayBeEncoded)
{
    m_mayBeEncoded = std::move(mayBeEncoded);
}

bool QtAbstractVhIpcPart::maySendEncoded()
{
    if (!m_maySendEncoded)
        m_maySendEncoded = m_mayBeEncoded
            && receivers(SIGNAL(sendVh(QHash<QString, QVariant>))) == 1 && m_mayBeEncoded();
    return *m_maySendEncoded;
}
