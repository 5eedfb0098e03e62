#include "kovcommandrun.h"

#include "appserverlauncher.h"
#include "kovdesktop.h"
#include "kovjobsview.h"

#include <QFileInfo>
#include <QJsonDocument>

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int connectRetryMs = 50;
constexpr int watchMs = 1000;
constexpr int usualColumns = 80;

bool isTerminal() { return ::isatty(STDOUT_FILENO) != 0; }

int terminalColumns()
{
    winsize size = {};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col
                                                                             : usualColumns;
}

/// Puts the cursor where the lines began and clears what follows (ECMA-48: CUU, ED).
QString eraseLines(const QString &lines)
{
    return lines.isEmpty() ? QString() : QStringLiteral("\x1b[%1A\x1b[J").arg(lines.count(u'\n'));
}

} // namespace

KovCommandRun::KovCommandRun(KovCommandLine line, QString serverName, QObject *parent,
                             QtClock &clock)
    : QObject(parent), m_line(std::move(line)), m_serverName(std::move(serverName)), m_clock(clock),
      m_client(nullptr, clock), m_timer(clock.createTimer())
{
    connect(&m_client, &KovCommandClient::notRunning, this, &KovCommandRun::onNotRunning);
    connect(&m_client, &KovCommandClient::ended, this, &KovCommandRun::onServiceEnded);
    connect(&m_client, &KovCommandClient::finished, this, &KovCommandRun::onAnswer);
    connect(m_timer.get(), &QtSingleShotTimer::timeout, this, &KovCommandRun::ask);
}

KovCommandRun::~KovCommandRun() = default;

void KovCommandRun::start() { m_timer->start(0); }

int KovCommandRun::print(int exitCode, const QString &output)
{
    FILE *const stream = exitCode == 0 ? stdout : stderr;
    std::fputs(output.toLocal8Bit().constData(), stream);
    std::fflush(stream);
    return exitCode;
}

void KovCommandRun::ask() { m_client.run(m_serverName, m_line.words); }

void KovCommandRun::onNotRunning()
{
    if (!m_line.needsService) {
        fail(QStringLiteral("kov: the service does not run\n"));
        return;
    }
    if (!std::exchange(m_serviceStarted, true)) {
        m_startedAtMs = m_clock.monotonicMs();
        if (const QString reason = m_service.start(AppServerLauncher::serverBinaryPath(),
                                                   {AppServerLauncher::serviceArgument()});
            !reason.isEmpty()) {
            fail(QStringLiteral("kov: cannot start the service: %1\n").arg(reason));
            return;
        }
    }
    if (m_clock.monotonicMs() - m_startedAtMs < serviceStartTimeoutMs)
        m_timer->start(connectRetryMs);
    else
        fail(QStringLiteral("kov: the service does not start\n"));
}

void KovCommandRun::onServiceEnded()
{
    // The service may have been about to end. Every command but this one can be sent again.
    if (m_line.words.constFirst().startsWith(u"add"))
        fail(QStringLiteral("kov: the service ended before it answered: see \"kov jobs\"\n"));
    else
        m_timer->start(connectRetryMs);
}

void KovCommandRun::fail(const QString &text)
{
    Q_EMIT finished(print(KovCommandLine::failureExitCode, text));
}

void KovCommandRun::onAnswer(int exitCode, const QString &output)
{
    if (exitCode == 0 && m_line.action == KovCommandLine::Action::ShowJobs)
        showJobs(output);
    else if (exitCode == 0 && m_line.action != KovCommandLine::Action::Ask)
        show(output.chopped(1));
    else
        Q_EMIT finished(print(exitCode, output));
}

void KovCommandRun::showJobs(const QString &json)
{
    const QJsonArray jobs = QJsonDocument::fromJson(json.toUtf8()).array();
    const QString lines = m_line.asJson ? KovJobsView::asJson(jobs)
        : isTerminal()                  ? KovJobsView::forTerminal(jobs, terminalColumns())
                                        : KovJobsView::forScripts(jobs);
    if (lines != m_shown)
        print(0, (isTerminal() ? eraseLines(m_shown) : QString()) + lines);
    m_shown = lines;
    if (m_line.watches && KovJobsView::isAnyUnderWay(jobs))
        m_timer->start(watchMs);
    else
        Q_EMIT finished(0);
}

void KovCommandRun::show(const QString &path)
{
    const QString opened =
        m_line.action == KovCommandLine::Action::OpenFolder && !QFileInfo(path).isDir()
        ? QFileInfo(path).path()
        : path;
    if (KovDesktop::open(opened)) {
        Q_EMIT finished(0);
        return;
    }
    fail(QStringLiteral("kov: there is no \"xdg-open\" to open it: %1\n").arg(opened));
}
