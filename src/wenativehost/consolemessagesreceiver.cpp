#include "consolemessagesreceiver.h"

#include "base64transport.h"
#include "consoleflowcontrol.h"
#include "percenttransport.h"
#include "qtappdefaultlogger.h"
#include "readconsolethread.h"

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
    const quint32 flags = m_flags;
    QString message;
    try {
        if (flags & Base64Encoded)
            body = Base64Transport::decode(body);
        else if (flags & PercentEncoded)
            body = PercentTransport::decode(body);
        message = QString::fromUtf8(body);
    } catch (const std::bad_alloc &) {
        logLine(1,
                QStringLiteral("[ConsoleMessagesReceiver]: WARNING: a message of %1 bytes is "
                               "dropped: not enough memory")
                    .arg(body.size()));
    }
    body = QByteArray();
    Q_EMIT gotMessage(message);
    if (m_flowControl)
        m_flowControl->posted(message.size());
}
