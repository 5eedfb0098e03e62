#include "kovplaylist.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

QByteArray beginning(const QByteArray &text)
{
    static const QByteArray byteOrderMark = QByteArrayLiteral("\xef\xbb\xbf");
    const QByteArray start = text.left(KovPlaylist::beginningBytes + byteOrderMark.size());
    return (start.startsWith(byteOrderMark) ? start.mid(byteOrderMark.size()) : start).trimmed();
}

QByteArray relocatedHls(const QByteArray &text, const QUrl &url, const QByteArray &prefix)
{
    QByteArrayList lines = text.split('\n');
    for (QByteArray &line : lines) {
        line = line.trimmed();
        if (line.isEmpty())
            continue;
        if (!line.startsWith('#')) {
            line = KovPlaylist::relocatedReference(line, url, prefix);
            continue;
        }
        const QByteArray attribute = QByteArrayLiteral("URI=\"");
        const qsizetype begin = line.indexOf(attribute) + attribute.size();
        const qsizetype end = line.indexOf('"', begin);
        if (begin >= attribute.size() && end >= 0)
            line.replace(
                begin, end - begin,
                KovPlaylist::relocatedReference(line.mid(begin, end - begin), url, prefix));
    }
    return lines.join('\n');
}

QByteArray relocatedDash(const QByteArray &text, const QUrl &url, const QByteArray &prefix)
{
    const auto relocate = [&url, &prefix](QStringView reference) {
        return QString::fromUtf8(
            KovPlaylist::relocatedReference(reference.trimmed().toUtf8(), url, prefix));
    };
    QByteArray result;
    QXmlStreamWriter writer(&result);
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    bool isReference = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            isReference = reader.name() == u"BaseURL" || reader.name() == u"Location";
            writer.writeStartElement(reader.qualifiedName().toString());
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes) {
                static const QStringList references{u"media"_qs, u"initialization"_qs,
                                                    u"sourceURL"_qs, u"index"_qs, u"xlink:href"_qs};
                const QString name = attribute.qualifiedName().toString();
                writer.writeAttribute(name,
                                      references.contains(name) ? relocate(attribute.value())
                                                                : attribute.value().toString());
            }
        } else if (reader.isCharacters() && isReference && !reader.isWhitespace()) {
            writer.writeCharacters(relocate(reader.text()));
        } else if (!reader.hasError() && !reader.isDTD()) {
            writer.writeCurrentToken(reader);
        }
    }
    return result;
}

} // namespace

bool KovPlaylist::isHls(const QByteArray &text) { return beginning(text).startsWith("#EXTM3U"); }

bool KovPlaylist::isName(const QString &name)
{
    static const QStringList endings{u"m3u8"_qs, u"m3u"_qs, u"mpd"_qs};
    return endings.contains(name.section(u'.', -1).toLower());
}

bool KovPlaylist::mayBegin(const QByteArray &text)
{
    const QByteArray start = beginning(text);
    return isHls(text) || start.startsWith("<?xml") || start.startsWith("<MPD");
}

bool KovPlaylist::isPlaylist(const QByteArray &text)
{
    return isHls(text) || (mayBegin(text) && text.contains("<MPD"));
}

QByteArray KovPlaylist::relocated(const QByteArray &text, const QUrl &url, const QByteArray &prefix)
{
    return isHls(text) ? relocatedHls(text, url, prefix) : relocatedDash(text, url, prefix);
}

QByteArray KovPlaylist::relocatedReference(const QByteArray &reference, const QUrl &url,
                                           const QByteArray &prefix)
{
    const QByteArray scheme = url.scheme().toLatin1() + '/';
    if (reference.startsWith("//"))
        return prefix + scheme + reference.mid(2);
    if (reference.startsWith('/'))
        return prefix + scheme + url.authority(QUrl::FullyEncoded).toLatin1() + reference;
    static const QRegularExpression absolute(QStringLiteral("^([a-zA-Z][a-zA-Z0-9+.-]*):(?://)?"));
    const auto match = absolute.match(QString::fromUtf8(reference));
    if (!match.hasMatch() || match.captured(1).toLower() == u"data")
        return reference;
    return prefix + match.captured(1).toLower().toLatin1() + '/'
        + reference.mid(match.capturedLength());
}
