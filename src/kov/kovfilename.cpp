#include "kovfilename.h"

#include <QStringView>

#include <algorithm>

namespace {

/// A longer text after the last dot is not treated as a file extension when a name is shortened.
constexpr int maxExtensionLength = 20;
/// Extensions that belong together with the one that follows ("tar.gz").
constexpr QStringView compoundEnding = u".tar";

bool isUnsafe(char32_t c)
{
    static constexpr QStringView reserved = u"<>:\"|?*/\\";
    if (c < 0x10000 && reserved.contains(static_cast<char16_t>(c)))
        return true;
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format: // among them those that change the writing direction
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

qsizetype extensionStart(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot <= 0 || name.size() - dot > maxExtensionLength)
        return name.size();
    const QStringView stem = QStringView(name).left(dot);
    return stem.size() > compoundEnding.size() && stem.endsWith(compoundEnding)
        ? dot - compoundEnding.size()
        : dot;
}

QString shortened(const QString &name)
{
    if (name.toUtf8().size() <= KovFileName::maxBytes)
        return name;
    const qsizetype split = extensionStart(name);
    const QString extension = name.mid(split);
    QString stem = name.left(std::min<qsizetype>(split, KovFileName::maxBytes));
    while (!stem.isEmpty()
           && stem.toUtf8().size() + extension.toUtf8().size() > KovFileName::maxBytes) {
        stem.chop(1);
        if (!stem.isEmpty() && stem.back().isHighSurrogate())
            stem.chop(1);
    }
    return stem + extension;
}

} // namespace

QString KovFileName::sanitized(const QString &suggestion)
{
    const qsizetype folderEnd =
        std::max(suggestion.lastIndexOf(u'/'), suggestion.lastIndexOf(u'\\'));
    QString name;
    const QList<uint> characters = QStringView(suggestion).mid(folderEnd + 1).toUcs4();
    for (const char32_t c : characters)
        name += isUnsafe(c) ? QStringLiteral("_") : QString::fromUcs4(&c, 1);

    name = shortened(name.trimmed());
    qsizetype start = 0;
    while (start < name.size() && (name.at(start) == u'.' || name.at(start).isSpace()))
        ++start;
    qsizetype end = name.size();
    while (end > start && (name.at(end - 1) == u'.' || name.at(end - 1).isSpace()))
        --end;
    return name.mid(start, end - start);
}

QString KovFileName::fromUrl(const QUrl &url)
{
    const QString name = sanitized(url.fileName(QUrl::FullyDecoded));
    return name.isEmpty() ? QStringLiteral("download") : name;
}

QString KovFileName::numbered(const QString &name, int number)
{
    if (number <= 1)
        return name;
    const qsizetype split = extensionStart(name);
    return QStringLiteral("%1 (%2)%3")
        .arg(name.left(split), QString::number(number), name.mid(split));
}
