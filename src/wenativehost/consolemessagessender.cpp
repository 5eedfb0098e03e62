#include "consolemessagessender.h"

#include "assertionlog.h"
#include "base64transport.h"
#include "consoleflowcontrol.h"
#include "percenttransport.h"
#include "qtappdefaultlogger.h"
#include "systemerrortext.h"

#include <QByteArray>
#include <QThread>

#include <poll.h>
#include <sys/uio.h>
#include <unistd.h>

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

/// The interval at which a blocked write checks whether the input has ended, in milliseconds.
constexpr int outputPollMs = 100;

} // namespace

ConsoleMessagesSender::ConsoleMessagesSender(QObject *parent, std::FILE *output)
    : QObject(parent), m_output(output)
{
}

ConsoleMessagesSender::~ConsoleMessagesSender()
{
    if (stdout == m_pieceByPiece.get())
        stdout = m_output;
}

void ConsoleMessagesSender::setFlowControl(QSharedPointer<ConsoleFlowControl> flowControl)
{
    m_flowControl = std::move(flowControl);
    if (m_pieceByPiece || ::fileno(m_output) < 0)
        return;
    // Writing to the output's own stream would block in the kernel, without a way to stop it.
    cookie_io_functions_t functions = {};
    functions.write = [](void *sender, const char *data, size_t size) -> ssize_t {
        return static_cast<ConsoleMessagesSender *>(sender)->writeOut(data,
                                                                      static_cast<qint64>(size));
    };
    const bool isStdout = m_output == stdout;
    m_pieceByPiece.reset(::fopencookie(this, "w", functions));
    // A variable like any other ("Standard Streams" in the GNU C library's manual).
    if (isStdout && m_pieceByPiece)
        stdout = m_pieceByPiece.get();
}

std::FILE *ConsoleMessagesSender::stream() const
{
    return m_pieceByPiece ? m_pieceByPiece.get() : m_output;
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
    sendText(message.toUtf8());
}

void ConsoleMessagesSender::sendUtf8(const std::string &message)
{
    const QByteArrayView text(message.data(), static_cast<qsizetype>(message.size()));
    if (QThread::currentThread() != thread() || !text.isValidUtf8())
        sendMessage(QString::fromUtf8(text));
    else
        sendText(text);
}

void ConsoleMessagesSender::sendText(QByteArrayView text)
{
    if (m_channel == Channel::Abandoned)
        return;
    QByteArray encoded;
    if (m_flags & Base64Encode)
        encoded = Base64Transport::encode(QByteArray::fromRawData(text.data(), text.size()));
    else if (m_flags & PercentEncode)
        encoded = PercentTransport::encode(QByteArray::fromRawData(text.data(), text.size()));
    const QByteArrayView body = m_flags & (Base64Encode | PercentEncode) ? encoded : text;
    writeLength(static_cast<quint32>(body.size()));
    writeBody(body);
    // The check is inverted, and stays so: the line is known from logs as the mark of this option.
    if ((m_flags & AddCrLf) && std::fwrite("\r\n", 1, 2, stream()) == 2)
        logFailedCheck(QStringLiteral(R"(2 != fwrite ("\r\n", 1, 2, stdout))"), 88);
    const bool isFlushed = std::fflush(stream()) == 0;
    if (m_channel == Channel::Abandoned)
        return;
    if (isFlushed)
        m_channel = Channel::Working;
    else
        onWriteFailed(errno);
}

void ConsoleMessagesSender::writeBody(QByteArrayView body)
{
    const auto size = static_cast<size_t>(body.size());
    if (std::fwrite(body.data(), 1, size, stream()) != size && m_channel != Channel::Abandoned)
        logFailedCheck(QStringLiteral("size == fwrite (&content.front (), 1, size, stdout)"), 85);
}

qint64 ConsoleMessagesSender::writeOut(const char *data, qint64 size)
{
    qint64 written = 0;
    while (written < size && m_channel != Channel::Abandoned) {
        const auto left = static_cast<size_t>(size - written);
        ssize_t count = writeWithoutBlocking(data + written, left);
        if (count <= 0) {
            if (!waitUntilWritable())
                break;
            // A pipe that is writable according to poll(2) takes so much without blocking
            // (pipe(7)).
            count = ::write(::fileno(m_output), data + written, std::min<size_t>(PIPE_BUF, left));
        }
        if (count >= 0)
            written += count;
        else if (errno != EINTR && errno != EAGAIN)
            break;
    }
    return written;
}

ssize_t ConsoleMessagesSender::writeWithoutBlocking(const char *data, size_t size)
{
    if (!m_canWriteWithoutBlocking)
        return 0;
    const iovec all = {const_cast<char *>(data), size};
    constexpr off_t currentPosition = -1;
    const ssize_t count = ::pwritev2(::fileno(m_output), &all, 1, currentPosition, RWF_NOWAIT);
    m_canWriteWithoutBlocking = count >= 0 || (errno != EOPNOTSUPP && errno != ENOSYS);
    return count;
}

bool ConsoleMessagesSender::waitUntilWritable()
{
    using std::chrono::milliseconds;
    pollfd target = {::fileno(m_output), POLLOUT, 0};
    milliseconds stuckFor{0};
    while (stuckFor < milliseconds(writeTimeoutMs)) {
        // A reader that takes a piece now and then must not keep the program alive, either.
        const auto left =
            std::chrono::ceil<milliseconds>(milliseconds(totalWriteTimeoutMs) - m_waited);
        const auto wait = std::clamp(left, milliseconds(0), milliseconds(outputPollMs));
        const auto begun = std::chrono::steady_clock::now();
        const int ready = ::poll(&target, 1, static_cast<int>(wait.count()));
        const bool isInterrupted = ready < 0 && errno == EINTR;
        const bool isInputEnded = m_flowControl->isInputEnded();
        if (isInputEnded)
            m_waited += std::chrono::steady_clock::now() - begun;
        // An error is left to the write.
        if (ready != 0 && !isInterrupted)
            return true;
        if (ready == 0 && isInputEnded) {
            stuckFor += wait;
            if (wait == milliseconds(0))
                break;
        }
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
                    .arg(systemErrorText(error)));
    m_channel = Channel::Failing;
}

void ConsoleMessagesSender::writeLength(quint32 size)
{
    if (m_flags & TextLength) {
        const QByteArray text = QByteArray::number(size) + ' ';
        const auto length = static_cast<size_t>(text.size());
        if (std::fwrite(text.constData(), 1, length, stream()) != length)
            logFailedCheck(
                QStringLiteral("s.length () == fwrite (&s.front (), 1, s.length (), stdout)"), 63);
    } else if (std::fwrite(&size, 1, sizeof size, stream()) != sizeof size) {
        logFailedCheck(QStringLiteral("4 == fwrite (sz, 1, 4, stdout)"), 82);
    }
}
