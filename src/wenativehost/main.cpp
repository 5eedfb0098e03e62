#include "abstractdownloadsmodulemetatypes.h"
#include "abstractincomingdownloadsprocessor.h"
#include "appclientmodule.h"
#include "appcoreconfig.h"
#include "appdataaccesshelper.h"
#include "appidentity.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "appversion.h"
#include "enddeadline.h"
#include "linksuccessor.h"
#include "portableversionmanager.h"
#include "qtappconfigbase.h"
#include "qtappdefaultlogger.h"
#include "qtappdelayedshutdownmanager.h"
#include "qtappportablemodesupport.h"
#include "qtobjectfactory.h"
#include "qtqobjectstracker.h"
#include "terminalanswer.h"
#include "terminationsignal.h"
#include "wenativehostappmodule.h"

#include <QCoreApplication>
#include <QSharedPointer>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace {

QString endReason(const WeNativeHostAppModule &appModule,
                  const QtAppDelayedShutdownManager &shutdownManager)
{
    if (appModule.initFailed(true))
        return QStringLiteral("the start failed");
    const QString reason = shutdownManager.shutdownReason();
    return reason.isEmpty() ? QStringLiteral("asked to") : reason;
}

/// Brings the modules up, runs the event loop, and returns its result once they are down again.
int runModules(const QSharedPointer<QtAppConfigBase> &config,
               const QSharedPointer<QtAppPortableModeSupport> &portableModeSupport,
               const QSharedPointer<QtAppDelayedShutdownManager> &shutdownManager)
{
    const EndDeadline endDeadline;
    WeNativeHostAppModule appModule(config, portableModeSupport, shutdownManager);
    QObject::connect(
        shutdownManager.data(), &QtAppDelayedShutdownManager::shutdownRequested, &appModule,
        [&appModule, &shutdownManager] {
            EndDeadline::begin();
            logLine(
                1,
                QStringLiteral("[main]: ending: %1").arg(endReason(appModule, *shutdownManager)));
            appModule.initialize(false);
        });
    QObject::connect(
        &appModule, &QtAbstractModule::initializeRunning, &appModule,
        [&](bool running, bool init) {
            if (!running && init && (appModule.initFailed(true) || appModule.needExit()))
                shutdownManager->shutdownAppQueued(QString());
        },
        Qt::DirectConnection);
    const TerminationSignal terminationSignal;
    QObject::connect(&terminationSignal, &TerminationSignal::received, shutdownManager.data(),
                     &QtAppDelayedShutdownManager::shutdownAppViaConnection);

    appModule.initialize(true);
    // While the reader's thread starts.
    qtRegisterAbstractDownloadsModuleMetatypes();
    return QCoreApplication::exec();
}

/// Delivers the messages of an earlier process of this program, without a browser.
int runSuccessor(const QSharedPointer<QtAppConfigBase> &config,
                 const QSharedPointer<QtAppPortableModeSupport> &portableModeSupport,
                 const QSharedPointer<QtAppDelayedShutdownManager> &shutdownManager)
{
    AppClientModule client(config, portableModeSupport);
    // There is no third process.
    client.setHandOver([](const QList<VhIpcQueuedMessage> &) { return false; });
    shutdownManager->registerObject(&client, true);
    QObject::connect(&client, &QtAbstractModule::initializeRunning, shutdownManager.data(),
                     [&](bool running, bool init) {
                         if (!running && !init)
                             shutdownManager->registerObject(&client, false);
                     });
    QObject::connect(shutdownManager.data(), &QtAppDelayedShutdownManager::shutdownRequested,
                     &client, [&client] { client.initialize(false); });

    client.initialize(true);
    const QList<VhIpcQueuedMessage> messages = LinkSuccessor::receive();
    const LinkSuccessor::DownloadsReport report(messages, *client.incomingDownloadsProcessor(),
                                                LostDownloads(*client.dataAccessHelper()));
    for (const VhIpcQueuedMessage &message : messages)
        client.remoteFrontendClientModule()->vhIpcProcessor()->sendOrQueue(message);
    shutdownManager->shutdownApp(QString());
    return QCoreApplication::exec();
}

/// The arguments from a browser, for the log: the extension's origin or id. Some browsers also pass
/// the path of a manifest, which contains the user's name.
QString shownArguments(const QStringList &arguments)
{
    QStringList shown;
    for (const QString &argument : arguments.mid(1)) {
        if (!argument.startsWith(u'/'))
            shown += argument;
    }
    return shown.join(u' ');
}

int run(int argc, char *argv[])
{
    // GLib's event loop makes a system call for every event that the reader posts, Qt's own only
    // for the first. The choice is for this process, not for the application that it starts.
    constexpr const char *withoutGlib = "QT_NO_GLIB";
    const QByteArray usersChoice = qgetenv(withoutGlib);
    qputenv(withoutGlib, "1");
    QCoreApplication application(argc, argv);
    usersChoice.isEmpty() ? qunsetenv(withoutGlib) : qputenv(withoutGlib, usersChoice);
    // The application object has just set the C library to the user's locale; its error texts go to
    // the log, which is in English. Qt determines the user's language without it.
    std::setlocale(LC_MESSAGES, "C");
    setAppIdentity();
    logLine(1,
            QStringLiteral("[main]: version %1, arguments: %2")
                .arg(appVersion(), shownArguments(QCoreApplication::arguments())));

    const auto portableVersionManager = qtCreateObject<PortableVersionManager>(QString());
    const QSharedPointer<QtAppConfigBase> config = QSharedPointer<AppCoreConfig>::create(
        QSharedPointer<QtAppConfigBase>::create(), portableVersionManager);
    const auto shutdownManager = qtCreateObject<QtAppDelayedShutdownManager>();
    const auto runProgram =
        QCoreApplication::arguments().contains(LinkSuccessor::commandLineSwitch()) ? runSuccessor
                                                                                   : runModules;
    const int exitCode =
        runProgram(config, portableVersionManager->portableModeSupport(), shutdownManager);
    // Objects released by deleteLater() must not be counted as alive.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    logLine(2, QStringLiteral("[main]: ended"));
    return exitCode;
}

std::terminate_handler defaultTerminate = nullptr;

/// An uncaught exception is logged and ends the program: abnormally, or with status 1 if it is out
/// of memory.
[[noreturn]] void logUncaught()
{
    try {
        if (const auto exception = std::current_exception())
            std::rethrow_exception(exception);
    } catch (const std::bad_alloc &) {
        logLine(1, QStringLiteral("[main]: ERROR: ends: not enough memory"));
        std::_Exit(1);
    } catch (const std::exception &exception) {
        logLine(1,
                QStringLiteral("[main]: ERROR: ends abnormally: ")
                    + QLatin1String(exception.what()));
    } catch (...) {
        logLine(1, QStringLiteral("[main]: ERROR: ends abnormally"));
    }
    defaultTerminate();
    std::abort();
}

void ignoreSignal(int) { }

/// A failed write must return an error, not kill the process. Unlike SIG_IGN, handlers are not
/// inherited by the launched application.
void turnWriteSignalsIntoErrors()
{
    struct sigaction action = {};
    action.sa_handler = ignoreSignal;
    action.sa_flags = SA_RESTART;
    // A browser that goes away closes its end of stdout first; the end of stdin is what ends this
    // program. SIGXFSZ: a file has reached the limit of setrlimit(2).
    for (const int signal : {SIGPIPE, SIGXFSZ})
        ::sigaction(signal, &action, nullptr);
}

int runLogged(int argc, char *argv[])
{
    // Constructed first and destroyed last, so that it logs and counts everything.
    const QtAppDefaultLogger logger(QtAppLogger::optionsFromEnvironment());
    defaultTerminate = std::set_terminate(logUncaught);
    const QtQObjectsTracker tracker;
    return run(argc, argv);
}

} // namespace

int main(int argc, char *argv[])
{
    if (const auto answer = terminalAnswer(argc, argv)) {
        std::fputs(answer->toLocal8Bit().constData(), stdout);
        return 0;
    }
    turnWriteSignalsIntoErrors();
    const int exitCode = runLogged(argc, argv);
#ifdef KOVALO_SKIPS_EXIT_HANDLERS
    // All is down, written and logged; the exit handlers of 30 libraries would only free memory.
    std::_Exit(exitCode);
#endif
    return exitCode;
}
