#include "appidentity.h"
#include "commandline.h"

#include <QCoreApplication>
#include <QLoggingCategory>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    setAppIdentity();
    // What goes wrong is said in the program's own words.
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return CommandLine(QCoreApplication::arguments().mid(1)).run();
}
