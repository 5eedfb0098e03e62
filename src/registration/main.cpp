#include "appidentity.h"
#include "commandline.h"

#include <QCoreApplication>
#include <QLoggingCategory>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    setAppIdentity();
    // Errors are reported by the program itself.
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return CommandLine(QCoreApplication::arguments().mid(1)).run();
}
