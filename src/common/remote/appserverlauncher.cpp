#include "appserverlauncher.h"

#include "qtappdefaultlogger.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <linux/close_range.h>
#include <unistd.h>

namespace {

/// Whatever else this process has open, the browser's descriptors among it, ends with exec().
void keepDescriptorsFromChildren()
{
    // An old kernel knows neither the call nor the flag. Qt's own descriptors do not need it.
    (void)::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
}

} // namespace

AppServerLauncher::AppServerLauncher(bool flag, QObject *parent)
    : QtAbstractServerLauncher(parent), m_flag(flag)
{
}

QString AppServerLauncher::serverBinaryPath()
{
    QString path = QCoreApplication::applicationDirPath();
    if (!path.isEmpty())
        path += u'/';
    return path + QStringLiteral("kov");
}

bool AppServerLauncher::serverBinaryExists() { return QFile::exists(serverBinaryPath()); }

void AppServerLauncher::launchServer()
{
    logLine(1, QStringLiteral("[AppServerLauncher]: launching server..."));

    QProcess process;
    process.setProgram(serverBinaryPath());
    process.setArguments({QStringLiteral("-service")});
    // The browser waits for its pipes to close when the host ends.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    keepDescriptorsFromChildren();

    AbstractError error;
    if (!process.startDetached()) {
        error =
            genericError(GenericErrorCode::Failure, "../../src/common/remote/appserverlauncher,63",
                         process.errorString().toStdString());
        QString line = QStringLiteral("[AppServerLauncher]: WARNING: failed to launch server. ");
        QTextStream stream(&line);
        stream << error;
        logLine(1, line);
    }
    Q_EMIT launchServerFinished(error);
}
