#include "consolemessagesreceiver.h"

#include "base64transport.h"
#include "percenttransport.h"
#include "qtappdefaultlogger.h"
#include "readconsolethread.h"

#include <QCoreApplication>
#include <QScopedValueRollback>
#include <QThread>

#include <new>
#include <optional>
#include <utility>

ConsoleMessagesReceiver::ConsoleMessagesReceiver(QObject *parent, std::FILE *input)
    : QObject(parent), m_reader(input)
{
}

void ConsoleMessagesReceiver::start()
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, &ConsoleMessagesReceiver::start, Qt::QueuedConnection);
        return;
    }
    m_running = !m_inputEnded;
    receive();
}

void ConsoleMessagesReceiver::enableFlags(quint32 flags, bool enable)
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

void ConsoleMessagesReceiver::receive()
{
    if (m_inputEnded || m_insideReceive)
        return;
    std::optional<quint32> length;
    std::optional<QByteArray> body;
    {
        const ReadConsoleThread::Blocking blocking;
        length = m_reader.readLength(m_flags & TextLength ? ConsoleFrameReader::LengthForm::Text
                                                          : ConsoleFrameReader::LengthForm::Binary);
        if (length)
            body = m_reader.readBody(*length);
    }
    if (!length) {
        m_running = false;
        m_inputEnded = true;
        Q_EMIT finished();
        return;
    }
    takeQueuedCalls();
    if (body)
        handleBody(std::move(*body));
    if (m_running)
        QMetaObject::invokeMethod(this, &ConsoleMessagesReceiver::start, Qt::QueuedConnection);
}

// A change of the flags that was queued while the thread was blocked holds for the frame that ended
// the wait: its sender had the answer to the handshake when it wrote it.
void ConsoleMessagesReceiver::takeQueuedCalls()
{
    const QScopedValueRollback insideReceive(m_insideReceive, true);
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void ConsoleMessagesReceiver::handleBody(QByteArray body)
{
    QString message;
    try {
        if (m_flags & Base64Encoded)
            body = Base64Transport::decode(body);
        else if (m_flags & PercentEncoded)
            body = PercentTransport::decode(body);
        message = QString::fromUtf8(body);
    } catch (const std::bad_alloc &) {
        logLine(1,
                QStringLiteral("[ConsoleMessagesReceiver]: WARNING: a message of %1 bytes is "
                               "dropped: not enough memory")
                    .arg(body.size()));
        return;
    }
    body = QByteArray();
    Q_EMIT gotMessage(message);
}
