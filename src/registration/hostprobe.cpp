#include "hostprobe.h"

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

/// For what takes no longer on any machine that works.
constexpr int promptMs = 5000;
/// Browsers take no longer messages from a host.
constexpr quint32 longestMessage = 1024 * 1024;

QByteArray frame(const QByteArray &body)
{
    const auto length = static_cast<quint32>(body.size());
    return QByteArray(reinterpret_cast<const char *>(&length), sizeof(length)) + body;
}

/// The body of the frame at the start of the bytes; nothing while it is not whole.
std::optional<QByteArray> firstBody(const QByteArray &bytes)
{
    quint32 length = 0;
    if (bytes.size() < qsizetype{sizeof(length)})
        return std::nullopt;
    std::memcpy(&length, bytes.constData(), sizeof(length));
    // What is no frame will not become one by more bytes.
    if (length > longestMessage)
        return bytes;
    if (bytes.size() < qsizetype{sizeof(length)} + length)
        return std::nullopt;
    return bytes.mid(sizeof(length), length);
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
    // The system's loader lists what it finds instead of starting the program, as for ldd(1).
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
    std::optional<QByteArray> body;
    while (!body && process.state() == QProcess::Running && !elapsed.hasExpired(m_timeoutMs)) {
        process.waitForReadyRead(std::max(1, m_timeoutMs - static_cast<int>(elapsed.elapsed())));
        received += process.readAllStandardOutput();
        body = firstBody(received);
    }
    result.milliseconds = elapsed.elapsed();
    const bool isRunning = process.state() == QProcess::Running;
    if (body) {
        const QJsonObject answer = QJsonDocument::fromJson(*body).object();
        result.version = answer[u"version"].toString();
        if (answer[u"type"].toString() != u"handshake" || result.version.isEmpty())
            result.failure = QStringLiteral("it answers something else than this host would");
    } else if (isRunning) {
        result.failure = QStringLiteral("it does not answer within %1 s")
                             .arg(QString::number(m_timeoutMs / 1000.0));
    }
    end(process);
    if (!body && !isRunning)
        result.failure = endOf(process);
    return result;
}
