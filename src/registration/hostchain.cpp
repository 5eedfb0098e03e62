#include "chains.h"

#include "appversion.h"
#include "hostprobe.h"
#include "programpaths.h"
#include "qtapplogger.h"

#include <QDir>
#include <QFileInfo>

namespace {

QString librariesLink() { return QStringLiteral("libraries"); }
QString hostAnswersLink() { return QStringLiteral("host-answers"); }
QString catchingLink() { return QStringLiteral("catching"); }
QString logLink() { return QStringLiteral("log"); }

/// A manifest may name the host of an installation that was damaged or removed.
QString cureOf(const QString &hostPath)
{
    return QFileInfo(hostPath).canonicalFilePath()
            == QFileInfo(ProgramPaths::host()).canonicalFilePath()
        ? QStringLiteral("install it again: sudo apt-get install --reinstall kovalo-native-host")
        : ProgramPaths::ownCommand() + QStringLiteral(" register");
}

void checkHostAnswer(Chain &chain, const QString &hostPath, const HostProbe &probe,
                     const QStringList &arguments)
{
    const HostProbe::Handshake handshake = probe.handshake(arguments);
    if (!handshake.failure.isEmpty()) {
        chain.broken(hostAnswersLink(), QStringLiteral("the host fails: ") + handshake.failure,
                     cureOf(hostPath));
        chain.notReached({catchingLink()}, QStringLiteral("the host does not answer"));
        return;
    }
    const QString other = handshake.version == appVersion()
        ? QString()
        : QStringLiteral(" (this program is of version %1)").arg(appVersion());
    chain.ok(hostAnswersLink(),
             QStringLiteral("it answered after %1 ms as version %2%3")
                 .arg(QString::number(handshake.milliseconds), handshake.version, other));
    if (!handshake.isCatching)
        chain.notChecked(catchingLink(), QStringLiteral("it did not tell its settings"));
    else if (*handshake.isCatching)
        chain.ok(catchingLink(), QStringLiteral("downloads are caught, as the options say"));
    else
        chain.broken(catchingLink(),
                     QStringLiteral("the options leave all downloads to the browser"),
                     QStringLiteral("turn on \"Catch downloads\" behind the extension's button"));
}

/// A log that cannot be written is no fault for downloads: the host works without it.
void checkLog(Chain &chain)
{
    const QtAppLogger::Options options = QtAppLogger::optionsFromEnvironment();
    if (options.verbosityLevel <= 0) {
        chain.ok(logLink(), QStringLiteral("KOVALO_LOG_LEVEL turns it off"));
        return;
    }
    if (options.filePath.isEmpty()) {
        chain.ok(logLink(), QStringLiteral("it goes to stderr, which the browser keeps"));
        return;
    }
    const QFileInfo file(options.filePath);
    QFileInfo place = file;
    while (!place.exists() && !place.isRoot())
        place = QFileInfo(place.absolutePath());
    const bool isUsable = file.exists() ? !file.isDir() : place.isDir();
    if (isUsable && place.isWritable())
        chain.ok(logLink(), QStringLiteral("it goes to %1").arg(options.filePath));
    else
        chain.impaired(
            logLink(),
            QStringLiteral("KOVALO_LOG_FILE is %1, which cannot be written").arg(options.filePath),
            QStringLiteral("unset KOVALO_LOG_FILE"));
}

} // namespace

Chain examineHost(const QString &hostPath, const QStringList &arguments, int timeoutMs)
{
    Chain chain{.subject = QStringLiteral("host"),
                .browser = {},
                .title = QStringLiteral("The host %1").arg(hostPath),
                .findings = {}};
    const HostProbe probe(hostPath, timeoutMs);
    if (!QFileInfo(hostPath).isExecutable()) {
        chain.notReached({librariesLink(), hostAnswersLink(), catchingLink()},
                         QStringLiteral("there is no host that could be started"));
    } else if (const QStringList missing = probe.missingLibraries(); !missing.isEmpty()) {
        chain.broken(librariesLink(),
                     QStringLiteral("these libraries are missing: ")
                         + missing.join(QStringLiteral(", ")),
                     QStringLiteral("sudo apt-get install libqt6core6 libqt6network6 libqt6sql6 "
                                    "libqt6sql6-sqlite"));
        chain.notReached({hostAnswersLink(), catchingLink()},
                         QStringLiteral("it cannot start without its libraries"));
    } else {
        chain.ok(librariesLink(), QStringLiteral("its libraries are there"));
        checkHostAnswer(chain, hostPath, probe, arguments);
    }
    checkLog(chain);
    return chain;
}
