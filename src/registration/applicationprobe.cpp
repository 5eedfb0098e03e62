#include "applicationprobe.h"

#include "applink.h"
#include "appserverlauncher.h"
#include "qtabstractserveraddress.h"
#include "qtabstractsocketvhipc.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtlocalsocket.h"
#include "serverprocess.h"
#include "vhipcsettings.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSharedPointer>
#include <QTimer>

namespace {

using Answer = ApplicationProbe::Answer;

/// Between two attempts to connect.
constexpr int pollMs = 20;

QString lastLineOf(const QString &text)
{
    const QString line = text.trimmed().section(u'\n', -1);
    return line.isEmpty() ? QString() : QStringLiteral(": ") + line;
}

} // namespace

Answer ApplicationProbe::ask(int timeoutMs)
{
    Answer answer;
    const auto socket = createAppClientSocket();
    const auto part = QSharedPointer<VhIpcSettings>::create(
        QSharedPointer<QtAppSettingsInMemoryManager>::create(),
        VhIpcSettings::ApplyAll | VhIpcSettings::RequestAll, QSet<QString>());
    const auto link = createAppLink(socket, part);

    QEventLoop loop;
    QElapsedTimer elapsed;
    const auto finish = [&](Answer::Outcome outcome) {
        answer.outcome = outcome;
        answer.milliseconds = elapsed.elapsed();
        loop.quit();
    };
    QObject::connect(socket.data(), &QtAbstractSocket::connectedStateChanged, &loop,
                     [&](bool connected) {
                         part->onConnectChanged(connected);
                         if (!connected)
                             finish(Answer::Outcome::Silent);
                     });
    QObject::connect(
        socket.data(), &QtAbstractSocket::errorOccurred, &loop, [&](const AbstractError &error) {
            if (socket->isConnected())
                return;
            answer.error = QString::fromStdString(error.description());
            finish(error.code() == QtLocalSocket::accessErrorCode ? Answer::Outcome::OfAnotherUser
                                                                  : Answer::Outcome::NotRunning);
        });
    QObject::connect(part.data(), &QtAbstractVhIpcPart::readyStateChanged, &loop, [&](bool ready) {
        if (ready)
            finish(Answer::Outcome::Answered);
    });
    QTimer::singleShot(timeoutMs, &loop, [&] { finish(Answer::Outcome::Silent); });
    elapsed.start();
    QMetaObject::invokeMethod(
        socket.data(),
        [&socket] {
            socket->connectToServer(QtAbstractServerAddress(appServerName()),
                                    QIODeviceBase::ReadWrite);
        },
        Qt::QueuedConnection);
    loop.exec();
    answer.socketPath = socket->serverPath();
    socket->disconnect(&loop);
    return answer;
}

ApplicationProbe::Start ApplicationProbe::start(const QString &program, int timeoutMs)
{
    Start result;
    ServerProcess process;
    QEventLoop loop;
    QElapsedTimer elapsed;
    elapsed.start();
    if (const QString reason = process.start(program, {AppServerLauncher::serviceArgument()});
        !reason.isEmpty()) {
        result.failure = QStringLiteral("it cannot be started: ") + reason;
        return result;
    }
    QObject::connect(&process, &ServerProcess::ended, &loop, [&] {
        // It also ends if another one, started by a browser meanwhile, serves already.
        if (!isOwnServerListening(appServerName(), pollMs))
            result.failure = QStringLiteral("it ends at once") + lastLineOf(process.stderrText());
        loop.quit();
    });
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (isOwnServerListening(appServerName(), pollMs)) {
            loop.quit();
        } else if (elapsed.hasExpired(timeoutMs)) {
            result.failure = QStringLiteral("it does not serve within %1 s")
                                 .arg(QString::number(timeoutMs / 1000.0));
            loop.quit();
        }
    });
    poll.start(pollMs);
    loop.exec();
    result.milliseconds = elapsed.elapsed();
    return result;
}
