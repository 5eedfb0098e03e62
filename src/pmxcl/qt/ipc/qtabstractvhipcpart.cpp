#include "qtabstractvhipcpart.h"

QtAbstractVhIpcPart::QtAbstractVhIpcPart(QObject *parent) : QObject(parent) { }

void QtAbstractVhIpcPart::onConnectChanged(bool connected) { m_connected = connected; }

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
