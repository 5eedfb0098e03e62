#include "playlisttext.h"

#include "fileextensions.h"

#include <algorithm>

namespace {

QByteArrayView withoutByteOrderMark(QByteArrayView text)
{
    constexpr QByteArrayView mark = "\xef\xbb\xbf";
    return text.startsWith(mark) ? text.sliced(mark.size()) : text;
}

} // namespace

QByteArrayView PlaylistText::beginning(QByteArrayView text)
{
    const QByteArrayView rest = withoutByteOrderMark(text);
    return rest.first(std::min(rest.size(), beginningBytes)).trimmed();
}

bool PlaylistText::isHls(QByteArrayView text) { return beginning(text).startsWith("#EXTM3U"); }

QByteArrayView PlaylistText::takeLine(QByteArrayView &rest)
{
    const qsizetype end = rest.indexOf('\n');
    const QByteArrayView line = rest.first(end < 0 ? rest.size() : end);
    rest = rest.sliced(std::min(line.size() + 1, rest.size()));
    return withoutByteOrderMark(line).trimmed();
}

QByteArrayView PlaylistText::reference(QByteArrayView line)
{
    if (!line.startsWith('#'))
        return line;
    constexpr QByteArrayView attribute = "URI=\"";
    if (!line.contains(attribute))
        return {};
    const qsizetype begin = line.indexOf(attribute) + attribute.size();
    const qsizetype end = line.indexOf('"', begin);
    return end < 0 ? QByteArrayView() : line.sliced(begin, end - begin);
}

bool PlaylistText::isFileName(const QString &name)
{
    static const QSet<QByteArray> extensions = fileExtensions(QStringLiteral("stream"));
    return name.contains(u'.') && extensions.contains(lowerCaseExtension(name));
}
