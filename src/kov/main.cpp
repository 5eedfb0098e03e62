#include "appcoreconfig.h"
#include "appidentity.h"
#include "applink.h"
#include "kovcommandline.h"
#include "kovcommandrun.h"
#include "kovservice.h"
#include "portableversionmanager.h"
#include "qtappconfigbase.h"
#include "qtappdefaultlogger.h"

#include <QCoreApplication>

#include <clocale>

namespace {

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

int run(const KovCommandLine &line)
{
    KovCommandRun command(line, appServerName());
    int status = 0;
    QObject::connect(&command, &KovCommandRun::finished, qApp, [&status](int exitCode) {
        status = exitCode;
        QCoreApplication::quit();
    });
    command.start();
    QCoreApplication::exec();
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // The C library's error texts go to the log, which hosts show in theirs.
    std::setlocale(LC_MESSAGES, "C");
    setAppIdentity();
    const QtAppDefaultLogger logger(QtAppLogger::optionsFromEnvironment());

    const KovCommandLine line = KovCommandLine::parse(QCoreApplication::arguments().mid(1));
    switch (line.action) {
    case KovCommandLine::Action::Print:
        return KovCommandRun::print(line.exitCode, line.output);
    case KovCommandLine::Action::Serve:
        return serve();
    default:
        return run(line);
    }
}
