// The reader of stdin, with arbitrary bytes. The first byte selects its flags. Its parsed lengths
// are compared with those of the C library.

#include "base64transport.h"
#include "consolemessagesreceiver.h"
#include "percenttransport.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace {

/// Parses the length at the start of the bytes, and removes it.
std::optional<std::uint32_t> takeLength(QByteArray &bytes, bool asText)
{
    std::uint32_t length = 0;
    if (!asText) {
        if (bytes.size() < static_cast<qsizetype>(sizeof length))
            return std::nullopt;
        std::memcpy(&length, bytes.constData(), sizeof length);
        bytes.remove(0, sizeof length);
        return length;
    }
    const qsizetype space = bytes.indexOf(' ');
    const QByteArray text = bytes.left(space);
    bytes.remove(0, space < 0 ? bytes.size() : space + 1);
    length = static_cast<std::uint32_t>(std::strtol(text.constData(), nullptr, 10));
    return length != 0 ? std::optional(length) : std::nullopt;
}

QStringList messagesIn(QByteArray bytes, std::uint32_t flags)
{
    QStringList messages;
    while (const auto length = takeLength(bytes, flags & ConsoleMessagesReceiver::TextLength)) {
        if (static_cast<std::uint64_t>(bytes.size()) < *length)
            break;
        QByteArray body = bytes.left(*length);
        bytes.remove(0, *length);
        if (flags & ConsoleMessagesReceiver::Base64Encoded)
            body = Base64Transport::decode(body);
        else if (flags & ConsoleMessagesReceiver::PercentEncoded)
            body = PercentTransport::decode(body);
        messages.append(QString::fromUtf8(body));
    }
    return messages;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::uint32_t flags = data[0];
    QByteArray bytes(reinterpret_cast<const char *>(data + 1), static_cast<qsizetype>(size - 1));
    std::FILE *const input = ::fmemopen(bytes.data(), size - 1, "r");
    if (!input)
        std::abort();

    QStringList messages;
    bool finished = false;
    ConsoleMessagesReceiver receiver(nullptr, input);
    QObject::connect(&receiver, &ConsoleMessagesReceiver::gotMessage, &receiver,
                     [&messages](const QString &message) { messages.append(message); });
    QObject::connect(&receiver, &ConsoleMessagesReceiver::finished, &receiver,
                     [&finished] { finished = true; });
    receiver.enableFlags(flags, true);
    while (!finished)
        receiver.receive();
    std::fclose(input);

    if (messages != messagesIn(bytes, flags))
        std::abort();
    return 0;
}
