#include "abstractdownloadsmodulemetatypes.h"
#include "appcoreconfig.h"
#include "portableversionmanager.h"
#include "qtappconfigbase.h"
#include "qtappdefaultlogger.h"
#include "qtappdelayedshutdownmanager.h"
#include "qtobjectfactory.h"
#include "qtqobjectstracker.h"
#include "wenativehostappmodule.h"

#include <QCoreApplication>

#include <csignal>

namespace {

int run(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tessmark"));
    QCoreApplication::setApplicationName(QStringLiteral("Kovalo"));

    const auto portableVersionManager = qtCreateObject<PortableVersionManager>(QString());
    const QSharedPointer<QtAppConfigBase> config = QSharedPointer<AppCoreConfig>::create(
        QSharedPointer<QtAppConfigBase>::create(), portableVersionManager);
    const auto shutdownManager = qtCreateObject<QtAppDelayedShutdownManager>();

    WeNativeHostAppModule appModule(config, portableVersionManager->portableModeSupport(),
                                    shutdownManager);
    QObject::connect(shutdownManager.data(), &QtAppDelayedShutdownManager::shutdownRequested,
                     &appModule, [&appModule] { appModule.initialize(false); });
    QObject::connect(
        &appModule, &QtAbstractModule::initializeRunning, &appModule,
        [&](bool running, bool init) {
            if (!running && init && (appModule.initFailed(true) || appModule.needExit()))
                shutdownManager->shutdownAppQueued(QString());
        },
        Qt::DirectConnection);

    appModule.initialize(true);
    // While the reader's thread starts.
    qtRegisterAbstractDownloadsModuleMetatypes();
    const int exitCode = QCoreApplication::exec();
    // What was released with deleteLater() goes before those that it may know.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    // A browser that goes away closes its end of stdout first; the end of stdin is what ends this
    // program.
    std::signal(SIGPIPE, SIG_IGN);
    // First and last, so that nothing is unheard of and nothing uncounted.
    const QtAppDefaultLogger logger(QtAppLogger::optionsFromEnvironment());
    const QtQObjectsTracker tracker;
    return run(argc, argv);
}
