#include "chains.h"

#include "applicationprobe.h"
#include "appserverlauncher.h"
#include "shellquoted.h"

#include <QFileInfo>

namespace {

using Outcome = ApplicationProbe::Answer::Outcome;

QString thereLink() { return QStringLiteral("application-there"); }
QString executableLink() { return QStringLiteral("application-executable"); }
QString runningLink() { return QStringLiteral("application-running"); }
QString socketLink() { return QStringLiteral("application-socket"); }
QString applicationAnswersLink() { return QStringLiteral("application-answers"); }

/// An application that is not running is no fault: a download starts it.
bool isExecutable(Chain &chain, const QString &program)
{
    const QFileInfo info(program);
    if (!info.isFile()) {
        chain.broken(thereLink(),
                     QStringLiteral("there is no application at %1, beside the host").arg(program),
                     QStringLiteral("sudo apt-get install kovalo-download-service"));
        chain.notReached({executableLink()}, QStringLiteral("it is not there"));
        return false;
    }
    chain.ok(thereLink(), QStringLiteral("the application is %1").arg(program));
    if (info.isExecutable()) {
        chain.ok(executableLink(), QStringLiteral("it may be executed"));
        return true;
    }
    chain.broken(executableLink(), QStringLiteral("it may not be executed"),
                 ownersCommand(QStringLiteral("chmod +x"), program), [program] {
                     return QFile::setPermissions(program,
                                                  QFile::permissions(program) | QFile::ExeOwner);
                 });
    return false;
}

/// Returns whether it runs now.
bool checkRunning(Chain &chain, const QString &program, bool isExecutable, Outcome outcome,
                  int timeoutMs)
{
    if (outcome != Outcome::NotRunning) {
        chain.ok(runningLink(), QStringLiteral("it runs"));
        return true;
    }
    if (!isExecutable) {
        chain.notChecked(runningLink(), QStringLiteral("it does not run, and cannot be started"));
        return false;
    }
    const ApplicationProbe::Start start = ApplicationProbe::start(program, timeoutMs);
    if (start.failure.isEmpty())
        chain.ok(runningLink(),
                 QStringLiteral("it did not run; now it was started, and served "
                                "after %1 ms")
                     .arg(start.milliseconds));
    else
        chain.broken(runningLink(), QStringLiteral("it does not run: ") + start.failure,
                     QStringLiteral("KOVALO_LOG_LEVEL=9 %1 %2    (says why)")
                         .arg(shellQuoted(program), AppServerLauncher::serviceArgument()));
    return start.failure.isEmpty();
}

void checkApplicationAnswer(Chain &chain, const QString &program,
                            const ApplicationProbe::Answer &answer)
{
    if (answer.outcome == Outcome::OfAnotherUser) {
        chain.broken(socketLink(),
                     QStringLiteral("another user's program serves at %1").arg(answer.socketPath),
                     QStringLiteral("sudo rm %1").arg(shellQuoted(answer.socketPath)));
        chain.notReached({applicationAnswersLink()},
                         QStringLiteral("nothing is told to another user"));
        return;
    }
    chain.ok(socketLink(), QStringLiteral("its socket is %1, and yours").arg(answer.socketPath));
    if (answer.outcome == Outcome::Answered)
        chain.ok(applicationAnswersLink(),
                 QStringLiteral("it told its settings after %1 ms").arg(answer.milliseconds));
    else
        chain.broken(applicationAnswersLink(),
                     QStringLiteral("it took the connection, but does not answer"),
                     QStringLiteral("%1 quit, or end it by force").arg(shellQuoted(program)));
}

} // namespace

Chain examineApplication(const QString &hostFolder, int timeoutMs)
{
    Chain chain{.subject = QStringLiteral("application"),
                .browser = {},
                .title = QStringLiteral("The application"),
                .findings = {}};
    const QString program = AppServerLauncher::serverBinaryPath(hostFolder);
    const bool canStart = isExecutable(chain, program);
    ApplicationProbe::Answer answer = ApplicationProbe::ask(timeoutMs);
    const bool wasRunning = answer.outcome != Outcome::NotRunning;
    if (!checkRunning(chain, program, canStart, answer.outcome, timeoutMs)) {
        chain.notReached({socketLink(), applicationAnswersLink()},
                         QStringLiteral("it does not run"));
        return chain;
    }
    if (!wasRunning)
        answer = ApplicationProbe::ask(timeoutMs);
    checkApplicationAnswer(chain, program, answer);
    return chain;
}
