#include "appidentity.h"

#include <QCoreApplication>

QString appName() { return QStringLiteral("Kovalo"); }

void setAppIdentity()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Tessmark"));
    QCoreApplication::setApplicationName(appName());
}
