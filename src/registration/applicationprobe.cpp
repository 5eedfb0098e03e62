#include "applicationprobe.h"

#include "applink.h"
#include "qtabstractserveraddress.h"
#include "qtabstractsocketvhipc.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtlocalsocket.h"
#include "vhipcsettings.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QSharedPointer>
#include <QTemporaryFile>
#include <QThread>
#include <QTimer>

namespace {

using Answer = ApplicationProbe::Answer;

constexpr int pollMs = 20;
/// Also for a zombie process.
bool hasEnded(qint64 pid)
{
    return QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(pid)).isEmpty();
}

QString lastLineOf(QFile &file)
{
    if (!file.seek(0))
        return {};
    const QByteArray line = file.readAll().trimmed().split('\n').constLast();
    return line.isEmpty() ? QString() : QStringLiteral(": ") + QString::fromLocal8Bit(line);
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
    QTemporaryFile errors;
    QProcess process;
    process.setProgram(program);
    process.setArguments({QStringLiteral("-service")});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(errors.open() ? errors.fileName() : QProcess::nullDevice());
    QElapsedTimer elapsed;
    elapsed.start();
    qint64 pid = 0;
    if (!process.startDetached(&pid)) {
        result.failure = QStringLiteral("it cannot be started: ") + process.errorString();
        return result;
    }
    while (!isOwnServerListening(appServerName(), pollMs)) {
        if (hasEnded(pid)) {
            result.failure = QStringLiteral("it ends at once") + lastLineOf(errors);
            return result;
        }
        if (elapsed.hasExpired(timeoutMs)) {
            result.failure = QStringLiteral("it does not serve within %1 s")
                                 .arg(QString::number(timeoutMs / 1000.0));
            return result;
        }
        QThread::msleep(pollMs);
    }
    result.milliseconds = elapsed.elapsed();
    return result;
}
