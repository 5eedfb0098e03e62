#include "consolemessagessender.h"

#include "assertionlog.h"
#include "base64transport.h"
#include "percenttransport.h"
#include "qtappdefaultlogger.h"

#include <QThread>

#include <cerrno>

namespace {

void logFailedCheck(const QString &expression, int line)
{
    logAssertionFailed(expression, QStringLiteral("../../src/wenativehost/consolemessagessender"),
                       line);
}

} // namespace

ConsoleMessagesSender::ConsoleMessagesSender(QObject *parent, std::FILE *output)
    : QObject(parent), m_output(output)
{
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
    const QByteArray content = encoded(message);
    const auto size = static_cast<quint32>(content.size());
    writeLength(size);
    if (std::fwrite(content.constData(), 1, size, m_output) != size)
        logFailedCheck(QStringLiteral("size == fwrite (&content.front (), 1, size, stdout)"), 85);
    // Upside down, and kept so: whoever reads the logs knows the line as the mark of this option.
    if ((m_flags & AddCrLf) && std::fwrite("\r\n", 1, 2, m_output) == 2)
        logFailedCheck(QStringLiteral(R"(2 != fwrite ("\r\n", 1, 2, stdout))"), 88);
    if (std::fflush(m_output) != 0)
        logLine(1,
                QStringLiteral("[ConsoleMessagesSender]: WARNING: a message was not written: %1")
                    .arg(qt_error_string(errno)));
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
