#include "appcoreconfig.h"
#include "appidentity.h"
#include "appservername.h"
#include "kovcommandclient.h"
#include "kovcommands.h"
#include "kovservice.h"
#include "portableversionmanager.h"
#include "qtappconfigbase.h"
#include "qtappdefaultlogger.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

int print(int exitCode, const QString &output)
{
    std::fputs(output.toLocal8Bit().constData(), exitCode == 0 ? stdout : stderr);
    return exitCode;
}

int serve()
{
    const auto portableVersion = QSharedPointer<PortableVersionManager>::create();
    const AppCoreConfig config(QSharedPointer<QtAppConfigBase>::create(), portableVersion);
    KovService service(config, portableVersion->portableModeSupport(), appServerName());
    QObject::connect(&service, &KovService::stopped, qApp, &QCoreApplication::quit);
    switch (service.start()) {
    case KovService::StartResult::Serving:
        return QCoreApplication::exec();
    case KovService::StartResult::AnotherServes:
        logLine(1, QStringLiteral("[kov]: another instance serves"));
        return 0;
    case KovService::StartResult::Failed:
        logLine(1, QStringLiteral("[kov]: ERROR: ") + service.errorString());
        return 1;
    }
    return 1;
}

int runCommand(const QStringList &arguments)
{
    int status = 0;
    KovCommandClient client;
    QObject::connect(&client, &KovCommandClient::finished, qApp,
                     [&status](int exitCode, const QString &output) {
                         status = print(exitCode, output);
                         QCoreApplication::quit();
                     });
    QMetaObject::invokeMethod(
        &client, [&client, &arguments] { client.run(appServerName(), arguments); },
        Qt::QueuedConnection);
    QCoreApplication::exec();
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    setAppIdentity();
    const QtAppDefaultLogger logger(QtAppLogger::optionsFromEnvironment());

    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return print(2, KovCommands::usage());
    return arguments == QStringList(QStringLiteral("-service")) ? serve() : runCommand(arguments);
}
