#include "httpcontentdisposition.h"

#include "hexpairs.h"
#include "httpparameters.h"

#include <QByteArray>
#include <QStringDecoder>

#include <algorithm>
#include <optional>
#include <string>

namespace {

std::optional<QString> fromUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

QString fromUtf8OrLatin1(const QByteArray &bytes)
{
    return fromUtf8(bytes).value_or(QString::fromLatin1(bytes));
}

/// Decodes bytes in a named character set; nothing if it is unknown or the bytes are invalid in it.
std::optional<QString> fromCharset(std::string_view charset, const QByteArray &bytes)
{
    const std::string name = asciiLowerCase(charset);
    if (name == "utf-8" || name == "utf8" || name == "us-ascii")
        return fromUtf8(bytes);
    if (name == "iso-8859-1" || name == "latin1")
        return QString::fromLatin1(bytes);
    return std::nullopt;
}

QByteArray toByteArray(std::string_view text)
{
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

/// RFC 8187: charset'language'percent-encoded.
std::optional<QString> decodedExtendedValue(std::string_view value)
{
    const size_t charsetEnd = value.find('\'');
    if (charsetEnd == std::string_view::npos)
        return std::nullopt;
    const size_t languageEnd = value.find('\'', charsetEnd + 1);
    if (languageEnd == std::string_view::npos)
        return std::nullopt;
    return fromCharset(value.substr(0, charsetEnd),
                       decodedHexPairs(value.substr(languageEnd + 1), '%'));
}

QByteArray decodedQEncoding(std::string_view text)
{
    std::string blanks(text);
    std::replace(blanks.begin(), blanks.end(), '_', ' ');
    return decodedHexPairs(blanks, '=');
}

/// RFC 2047: =?charset?B or Q?text?=, one or more in a row; nothing if it is not of that form.
std::optional<QString> decodedWords(std::string_view text)
{
    QString result;
    std::string_view rest = trimmedHttpSpace(text);
    while (!rest.empty()) {
        if (!rest.starts_with("=?"))
            return std::nullopt;
        const size_t charsetEnd = rest.find('?', 2);
        if (charsetEnd == std::string_view::npos || charsetEnd + 2 >= rest.size()
            || rest[charsetEnd + 2] != '?')
            return std::nullopt;
        const size_t end = rest.find("?=", charsetEnd + 3);
        if (end == std::string_view::npos)
            return std::nullopt;
        const std::string_view encoded = rest.substr(charsetEnd + 3, end - charsetEnd - 3);
        const char encoding = rest[charsetEnd + 1];
        QByteArray bytes;
        if (encoding == 'B' || encoding == 'b')
            bytes = QByteArray::fromBase64(toByteArray(encoded));
        else if (encoding == 'Q' || encoding == 'q')
            bytes = decodedQEncoding(encoded);
        else
            return std::nullopt;
        const auto word = fromCharset(rest.substr(2, charsetEnd - 2), bytes);
        if (!word)
            return std::nullopt;
        result += *word;
        rest = trimmedHttpSpace(rest.substr(end + 2));
    }
    return result.isEmpty() ? std::nullopt : std::optional(result);
}

QString decodedPlainValue(std::string_view value)
{
    if (const auto words = decodedWords(value))
        return *words;
    // Not in any standard, but widespread: percent-encoded UTF-8 in the plain parameter.
    if (const auto text = fromUtf8(decodedHexPairs(value, '%')))
        return *text;
    return fromUtf8OrLatin1(toByteArray(value));
}

/// A server's name must not choose a folder.
QString lastPathSegment(const QString &name)
{
    QString segment = name.mid(std::max(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\')) + 1);
    segment.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
    segment = segment.trimmed();
    return segment == u"." || segment == u".." ? QString() : segment;
}

} // namespace

QString fileNameFromContentDisposition(std::string_view value)
{
    std::optional<QString> plain;
    std::optional<QString> extended;
    // The disposition type has no "=" and is skipped like any other such word; if the server left
    // it out, the first parameter is still read.
    for (const auto &[name, text] : httpParameters(value)) {
        if (name == "filename*" && !extended)
            extended = decodedExtendedValue(text);
        else if (name == "filename" && !plain)
            plain = decodedPlainValue(text);
    }
    const QString best = lastPathSegment(extended.value_or(QString()));
    return best.isEmpty() ? lastPathSegment(plain.value_or(QString())) : best;
}
