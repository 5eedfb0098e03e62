#include "pmxkovbhipchandshaketaskprocessor.h"

#include "appversion.h"
#include "consolemessagesreceiver.h"
#include "consolemessagessender.h"
#include "pmxkovbhipchandshaketaskresponse.h"
#include "pmxtaskresponses.h"

#include <string>
#include <utility>

pmxKovBhIpcHandshakeTaskProcessor::pmxKovBhIpcHandshakeTaskProcessor(
    QWeakPointer<ConsoleMessagesReceiver> receiver, QWeakPointer<ConsoleMessagesSender> sender)
    : m_receiver(std::move(receiver)), m_sender(std::move(sender))
{
}

void pmxKovBhIpcHandshakeTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                Callback callback)
{
    using Receiver = ConsoleMessagesReceiver;
    using Sender = ConsoleMessagesSender;
    const auto receiver = m_receiver.toStrongRef();
    const auto sender = m_sender.toStrongRef();
    const pmxKovBhIpcTaskHandshake &wish = task->handshake;
    if (sender) {
        sender->enableFlags(Sender::AddCrLf, wish.response_add_crlf);
        sender->enableFlags(Sender::TextLength, wish.response_send_data_len_as_string);
        sender->enableFlags(Sender::PercentEncode, wish.uri_encoding_for_send);
        sender->enableFlags(Sender::Base64Encode, wish.base64_encoding_for_send);
    }
    if (receiver) {
        receiver->enableFlags(Receiver::PercentEncoded, wish.uri_encoding_for_rcv);
        receiver->enableFlags(Receiver::Base64Encoded, wish.base64_encoding_for_rcv);
    }
    const auto response = pmxResponseTo<pmxKovBhIpcHandshakeTaskResponse>(*task);
    static const std::string version = appVersion().toStdString();
    response->version = version;
    callback(task, response);
    Q_EMIT answered();
}
