#include "appidentity.h"

#include <QCoreApplication>

void setAppIdentity()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Tessmark"));
    QCoreApplication::setApplicationName(QStringLiteral("Kovalo"));
}
