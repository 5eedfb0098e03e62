#include "consolemessagesreceiver.h"

#include "base64transport.h"
#include "consoleflowcontrol.h"
#include "percenttransport.h"
#include "qtappdefaultlogger.h"
#include "readconsolethread.h"

#include <QMetaMethod>
#include <QThread>

#include <new>
#include <optional>
#include <utility>

ConsoleMessagesReceiver::ConsoleMessagesReceiver(QObject *parent, std::FILE *input)
    : QObject(parent), m_input(input), m_reader(input)
{
}

void ConsoleMessagesReceiver::setFlowControl(QSharedPointer<ConsoleFlowControl> flowControl)
{
    m_flowControl = std::move(flowControl);
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
    if (enable)
        m_flags.fetch_or(flags);
    else
        m_flags.fetch_and(~flags);
}

void ConsoleMessagesReceiver::receive()
{
    if (m_inputEnded)
        return;
    const auto lengthForm = m_flags & TextLength ? ConsoleFrameReader::LengthForm::Text
                                                 : ConsoleFrameReader::LengthForm::Binary;
    std::optional<quint32> length;
    std::optional<QByteArray> body;
    {
        const ReadConsoleThread::Blocking blocking;
        if (m_flowControl)
            m_flowControl->waitForRoom(::fileno(m_input));
        length = m_reader.readLength(lengthForm);
        if (length)
            body = m_reader.readBody(*length);
    }
    if (!length) {
        m_running = false;
        m_inputEnded = true;
        if (m_flowControl)
            m_flowControl->setInputEnded();
        Q_EMIT finished();
        return;
    }
    if (body)
        handleBody(std::move(*body));
    if (m_running)
        QMetaObject::invokeMethod(this, &ConsoleMessagesReceiver::start, Qt::QueuedConnection);
}

void ConsoleMessagesReceiver::handleBody(QByteArray body)
{
    static const QMetaMethod textSignal =
        QMetaMethod::fromSignal(&ConsoleMessagesReceiver::gotMessage);
    const qsizetype size = body.size();
    QString text;
    try {
        body = decoded(body, m_flags);
        if (isSignalConnected(textSignal))
            text = QString::fromUtf8(body);
    } catch (const std::bad_alloc &) {
        body = QByteArray();
        logLine(1,
                QStringLiteral("[ConsoleMessagesReceiver]: WARNING: a message of %1 bytes is "
                               "dropped: not enough memory")
                    .arg(size));
    }
    const qsizetype posted = body.size() + text.size() * qsizetype(sizeof(QChar));
    Q_EMIT gotMessage(text);
    Q_EMIT gotBytes(QSharedPointer<QByteArray>::create(std::move(body)));
    if (m_flowControl)
        m_flowControl->posted(posted);
}

QByteArray ConsoleMessagesReceiver::decoded(const QByteArray &body, quint32 flags)
{
    QByteArray bytes = body;
    if (flags & Base64Encoded)
        bytes = Base64Transport::decode(body);
    else if (flags & PercentEncoded)
        bytes = PercentTransport::decode(body);
    // QString drops a byte order mark.
    if (bytes.startsWith("\xef\xbb\xbf") || !QByteArrayView(bytes).isValidUtf8())
        bytes = QString::fromUtf8(bytes).toUtf8();
    return bytes;
}
