#include "abstractdownloadsmodulemetatypes.h"
#include "appcoreconfig.h"
#include "portableversionmanager.h"
#include "qtappconfigbase.h"
#include "qtappdefaultlogger.h"
#include "qtappdelayedshutdownmanager.h"
#include "qtappportablemodesupport.h"
#include "qtobjectfactory.h"
#include "qtqobjectstracker.h"
#include "wenativehostappmodule.h"

#include <QCoreApplication>
#include <QSharedPointer>

#include <csignal>

namespace {

/// Brings the modules up, runs the event loop, and returns its result when they are down again.
int runModules(const QSharedPointer<QtAppConfigBase> &config,
               const QSharedPointer<QtAppPortableModeSupport> &portableModeSupport,
               const QSharedPointer<QtAppDelayedShutdownManager> &shutdownManager)
{
    WeNativeHostAppModule appModule(config, portableModeSupport, shutdownManager);
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
    return QCoreApplication::exec();
}

int run(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tessmark"));
    QCoreApplication::setApplicationName(QStringLiteral("Kovalo"));

    const auto portableVersionManager = qtCreateObject<PortableVersionManager>(QString());
    const QSharedPointer<QtAppConfigBase> config = QSharedPointer<AppCoreConfig>::create(
        QSharedPointer<QtAppConfigBase>::create(), portableVersionManager);
    const auto shutdownManager = qtCreateObject<QtAppDelayedShutdownManager>();
    const int exitCode =
        runModules(config, portableVersionManager->portableModeSupport(), shutdownManager);
    // What was released with deleteLater() is not to be counted as alive.
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
