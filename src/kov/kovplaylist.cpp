#include "kovplaylist.h"

#include "playlisttext.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

QByteArray relocatedHls(const QByteArray &text, const QUrl &url, const QByteArray &prefix)
{
    QByteArray result;
    QByteArrayView rest = text;
    while (!rest.isEmpty()) {
        const QByteArrayView line = PlaylistText::takeLine(rest);
        QByteArray relocated = line.toByteArray();
        if (const auto reference = PlaylistText::reference(line); !reference.isEmpty())
            relocated.replace(
                reference.data() - line.data(), reference.size(),
                KovPlaylist::relocatedReference(reference.toByteArray(), url, prefix));
        result += relocated + '\n';
    }
    return result;
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

bool KovPlaylist::mayBegin(const QByteArray &text)
{
    const QByteArrayView start = PlaylistText::beginning(text);
    return PlaylistText::isHls(text) || start.startsWith("<?xml") || start.startsWith("<MPD");
}

bool KovPlaylist::isPlaylist(const QByteArray &text)
{
    return PlaylistText::isHls(text) || (mayBegin(text) && text.contains("<MPD"));
}

QByteArray KovPlaylist::relocated(const QByteArray &text, const QUrl &url, const QByteArray &prefix)
{
    return PlaylistText::isHls(text) ? relocatedHls(text, url, prefix)
                                     : relocatedDash(text, url, prefix);
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
