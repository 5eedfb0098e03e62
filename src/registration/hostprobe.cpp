#include "hostprobe.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace {

/// For steps that take milliseconds on a healthy machine.
constexpr int promptMs = 5000;
/// The browsers' limit for messages from a host.
constexpr quint32 maxMessageBytes = 1024 * 1024;

QByteArray frame(const QByteArray &body)
{
    const auto length = static_cast<quint32>(body.size());
    return QByteArray(reinterpret_cast<const char *>(&length), sizeof(length)) + body;
}

/// Takes the body of the frame at the start of the bytes; nothing while it is incomplete.
std::optional<QByteArray> takeBody(QByteArray &bytes)
{
    quint32 length = 0;
    if (bytes.size() < qsizetype{sizeof(length)})
        return std::nullopt;
    std::memcpy(&length, bytes.constData(), sizeof(length));
    // An invalid frame stays invalid with more bytes.
    if (length > maxMessageBytes)
        return bytes;
    if (bytes.size() < qsizetype{sizeof(length)} + length)
        return std::nullopt;
    const QByteArray body = bytes.mid(sizeof(length), length);
    bytes.remove(0, qsizetype{sizeof(length)} + length);
    return body;
}

/// The next message; nothing if the process ends, or the time is up, before it is complete.
std::optional<QByteArray> receive(QProcess &process, QByteArray &received,
                                  const QDeadlineTimer &end)
{
    std::optional<QByteArray> body = takeBody(received);
    while (!body && process.state() == QProcess::Running && !end.hasExpired()) {
        process.waitForReadyRead(std::max(1, static_cast<int>(end.remainingTime())));
        received += process.readAllStandardOutput();
        body = takeBody(received);
    }
    return body;
}

/// The option to catch downloads in the host's answer.
std::optional<bool> askWhetherCatching(QProcess &process, QByteArray &received, int timeoutMs)
{
    process.write(frame(R"({"id":"2","type":"query_settings"})"));
    const QDeadlineTimer end(timeoutMs);
    while (const auto body = receive(process, received, end)) {
        const QJsonObject answer = QJsonDocument::fromJson(*body).object();
        const QJsonValue isEnabled = answer[u"settings"][u"browser"][u"monitor"][u"enable"];
        if (answer[u"id"].toString() == u"2")
            return isEnabled.isBool() ? std::optional<bool>(isEnabled.toBool()) : std::nullopt;
    }
    return std::nullopt;
}

QString lastLine(const QByteArray &text)
{
    const QByteArray line = text.trimmed().split('\n').constLast().trimmed();
    return line.isEmpty() ? QString() : QStringLiteral(": ") + QString::fromLocal8Bit(line);
}

QString endOf(QProcess &process)
{
    const QString how = process.exitStatus() == QProcess::CrashExit
        ? QStringLiteral("it crashed before it answered")
        : QStringLiteral("it ended with status %1 before it answered").arg(process.exitCode());
    return how + lastLine(process.readAllStandardError());
}

void end(QProcess &process)
{
    process.closeWriteChannel();
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(promptMs)) {
        process.kill();
        process.waitForFinished(promptMs);
    }
}

} // namespace

HostProbe::HostProbe(QString hostPath, int timeoutMs)
    : m_hostPath(std::move(hostPath)), m_timeoutMs(timeoutMs)
{
}

QStringList HostProbe::missingLibraries() const
{
    // With this variable the dynamic loader lists libraries instead of starting the program; see
    // ldd(1).
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_TRACE_LOADED_OBJECTS"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(m_hostPath, QStringList());
    if (!process.waitForFinished(promptMs))
        process.kill();
    QStringList missing;
    const QList<QByteArray> lines = process.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines) {
        if (line.contains("=> not found"))
            missing += QString::fromLocal8Bit(line.trimmed().split(' ').constFirst());
    }
    return missing;
}

HostProbe::Handshake HostProbe::handshake(const QStringList &arguments) const
{
    Handshake result;
    QProcess process;
    QElapsedTimer elapsed;
    elapsed.start();
    process.start(m_hostPath, arguments);
    if (!process.waitForStarted(m_timeoutMs)) {
        result.failure = QStringLiteral("it cannot be started: ") + process.errorString();
        return result;
    }
    process.write(frame(R"({"id":"1","type":"handshake","handshake":{"api_version":"3"}})"));
    QByteArray received;
    const auto body = receive(process, received,
                              QDeadlineTimer(m_timeoutMs - static_cast<int>(elapsed.elapsed())));
    result.milliseconds = elapsed.elapsed();
    const bool isRunning = process.state() == QProcess::Running;
    if (body) {
        const QJsonObject answer = QJsonDocument::fromJson(*body).object();
        result.version = answer[u"version"].toString();
        if (answer[u"type"].toString() != u"handshake" || result.version.isEmpty())
            result.failure = QStringLiteral("it answers something else than this host would");
        else
            result.isCatching = askWhetherCatching(process, received, m_timeoutMs);
    } else if (isRunning) {
        result.failure = QStringLiteral("it does not answer within %1 s")
                             .arg(QString::number(m_timeoutMs / 1000.0));
    }
    end(process);
    if (!body && !isRunning)
        result.failure = endOf(process);
    return result;
}
