#include "appserverlauncher.h"

#include "qtappdefaultlogger.h"
#include "serverprocess.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <sys/wait.h>

namespace {

/// How much of a launched server's output is logged: the last so many characters.
constexpr int loggedStderr = 1000;

QString statusText(int waitStatus)
{
    return WIFSIGNALED(waitStatus) ? QStringLiteral("by signal %1").arg(WTERMSIG(waitStatus))
                                   : QStringLiteral("with status %1").arg(WEXITSTATUS(waitStatus));
}

} // namespace

AppServerLauncher::AppServerLauncher(bool flag, QObject *parent)
    : QtAbstractServerLauncher(parent), m_flag(flag)
{
}

QString AppServerLauncher::serverBinaryPath()
{
    return serverBinaryPath(QCoreApplication::applicationDirPath());
}

QString AppServerLauncher::serverBinaryPath(const QString &folder)
{
    const QString name = QStringLiteral("kov");
    return folder.isEmpty() ? name : folder + u'/' + name;
}

QString AppServerLauncher::serviceArgument() { return QStringLiteral("-service"); }

bool AppServerLauncher::serverBinaryExists() { return QFile::exists(serverBinaryPath()); }

bool AppServerLauncher::serverBinaryCanRun()
{
    const QFileInfo binary(serverBinaryPath());
    return binary.isFile() && binary.isExecutable();
}

void AppServerLauncher::launchServer()
{
    logLine(1, QStringLiteral("[AppServerLauncher]: launching server..."));

    auto *const process = new ServerProcess(this);
    AbstractError error;
    if (const QString reason = process->start(serverBinaryPath(), {serviceArgument()});
        reason.isEmpty()) {
        connect(process, &ServerProcess::ended, this, [process](int waitStatus, qint64 ranForMs) {
            logEnd(*process, waitStatus, ranForMs);
            process->deleteLater();
        });
    } else {
        delete process;
        error = genericError(GenericErrorCode::Failure,
                             "../../src/common/remote/appserverlauncher,63", reason.toStdString());
        QString line = QStringLiteral("[AppServerLauncher]: WARNING: failed to launch server. ");
        QTextStream stream(&line);
        stream << error;
        logLine(1, line);
    }
    Q_EMIT launchServerFinished(error);
}

void AppServerLauncher::logEnd(const ServerProcess &process, int waitStatus, qint64 ranForMs)
{
    // It exits with status 0 when it was asked to end, and when another instance is running.
    if (waitStatus == 0) {
        logLine(2, QStringLiteral("[AppServerLauncher]: the launched server has ended"));
        return;
    }
    logLine(1,
            QStringLiteral("[AppServerLauncher]: WARNING: the launched server ended after %1 ms "
                           "%2. It wrote: %3")
                .arg(QString::number(ranForMs), statusText(waitStatus),
                     process.stderrText().trimmed().right(loggedStderr)));
}
