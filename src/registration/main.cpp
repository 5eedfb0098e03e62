#include "commandline.h"
#include "qtappdefaultlogger.h"

#include <QCoreApplication>
#include <QLoggingCategory>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // As the host has them: by these names its folders are found.
    QCoreApplication::setOrganizationName(QStringLiteral("Tessmark"));
    QCoreApplication::setApplicationName(QStringLiteral("Kovalo"));
    // What goes wrong is said in the program's own words.
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return CommandLine(QCoreApplication::arguments().mid(1)).run();
}
