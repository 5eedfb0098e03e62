#include "consolemessagessender.h"

#include "assertionlog.h"
#include "base64transport.h"
#include "consoleflowcontrol.h"
#include "percenttransport.h"
#include "qtappdefaultlogger.h"

#include <QThread>

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace {

void logFailedCheck(const QString &expression, int line)
{
    logAssertionFailed(expression, QStringLiteral("../../src/wenativehost/consolemessagessender"),
                       line);
}

/// A pipe that poll(2) calls writable takes so many bytes without a wait (pipe(7)), a length before
/// them and a line break after them included.
constexpr qsizetype pieceSize = PIPE_BUF - 16;
/// How often a write that is stuck looks whether the input has ended, in milliseconds.
constexpr int lookAgainMs = 100;

} // namespace

ConsoleMessagesSender::ConsoleMessagesSender(QObject *parent, std::FILE *output)
    : QObject(parent), m_output(output)
{
}

ConsoleMessagesSender::~ConsoleMessagesSender() = default;

void ConsoleMessagesSender::setFlowControl(QSharedPointer<ConsoleFlowControl> flowControl)
{
    m_flowControl = std::move(flowControl);
}

void ConsoleMessagesSender::enableFlags(quint32 flags, bool enable)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, flags, enable] { enableFlags(flags, enable); }, Qt::QueuedConnection);
        return;
    }
    if (enable)
        m_flags |= flags;
    else
        m_flags &= ~flags;
}

void ConsoleMessagesSender::sendMessage(const QString &message)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, message] { sendMessage(message); }, Qt::QueuedConnection);
        return;
    }
    if (m_channel == Channel::Abandoned)
        return;
    const QByteArray content = encoded(message);
    if (!waitUntilWritable())
        return;
    writeLength(static_cast<quint32>(content.size()));
    if (!writeBody(content))
        return;
    // The check is inverted, and stays so: the line is known from logs as the mark of this option.
    if ((m_flags & AddCrLf) && std::fwrite("\r\n", 1, 2, m_output) == 2)
        logFailedCheck(QStringLiteral(R"(2 != fwrite ("\r\n", 1, 2, stdout))"), 88);
    if (std::fflush(m_output) != 0)
        onWriteFailed(errno);
    else
        m_channel = Channel::Working;
}

bool ConsoleMessagesSender::writeBody(const QByteArray &body)
{
    bool failed = false;
    for (qsizetype written = 0; written < body.size() && !failed; written += pieceSize) {
        if (written > 0 && (std::fflush(m_output) != 0 || !waitUntilWritable()))
            failed = true;
        if (m_channel == Channel::Abandoned)
            return false;
        const auto size = static_cast<size_t>(std::min(pieceSize, body.size() - written));
        if (failed || std::fwrite(body.constData() + written, 1, size, m_output) != size)
            failed = true;
    }
    if (failed)
        logFailedCheck(QStringLiteral("size == fwrite (&content.front (), 1, size, stdout)"), 85);
    return true;
}

bool ConsoleMessagesSender::waitUntilWritable()
{
    pollfd target = {::fileno(m_output), POLLOUT, 0};
    if (target.fd < 0)
        return true;
    int stuckForMs = 0;
    while (stuckForMs < stuckWithinMs) {
        const int ready = ::poll(&target, 1, lookAgainMs);
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return true;
        if (ready == 0 && m_flowControl && m_flowControl->isInputEnded())
            stuckForMs += lookAgainMs;
    }
    m_channel = Channel::Abandoned;
    logLine(1,
            QStringLiteral("[ConsoleMessagesSender]: WARNING: answers are dropped: the input has "
                           "ended, and nobody reads the output"));
    return false;
}

void ConsoleMessagesSender::onWriteFailed(int error)
{
    if (m_channel == Channel::Working)
        logLine(1,
                QStringLiteral("[ConsoleMessagesSender]: WARNING: a message was not written: %1")
                    .arg(qt_error_string(error)));
    m_channel = error == EPIPE ? Channel::Abandoned : Channel::Failing;
}

QByteArray ConsoleMessagesSender::encoded(const QString &message) const
{
    QByteArray text = message.toUtf8();
    if (m_flags & Base64Encode)
        return Base64Transport::encode(text);
    if (m_flags & PercentEncode)
        return PercentTransport::encode(text);
    return text;
}

void ConsoleMessagesSender::writeLength(quint32 size)
{
    if (m_flags & TextLength) {
        const QByteArray text = QByteArray::number(size) + ' ';
        const auto length = static_cast<size_t>(text.size());
        if (std::fwrite(text.constData(), 1, length, m_output) != length)
            logFailedCheck(
                QStringLiteral("s.length () == fwrite (&s.front (), 1, s.length (), stdout)"), 63);
    } else if (std::fwrite(&size, 1, sizeof size, m_output) != sizeof size) {
        logFailedCheck(QStringLiteral("4 == fwrite (sz, 1, 4, stdout)"), 82);
    }
}
