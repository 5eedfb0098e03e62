#include "messagingproxy.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>

QString MessagingProxy::serviceName()
{
    return QStringLiteral("org.freedesktop.NativeMessagingProxy");
}

bool MessagingProxy::isReachable()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusConnectionInterface *const names = bus.interface();
    return names->isServiceRegistered(serviceName()).value()
        || names->activatableServiceNames().value().contains(serviceName());
}
