#include "shellquoted.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <unistd.h>

namespace {
QString escapedQuote() { return QStringLiteral("'\\''"); }
} // namespace

QString shellQuoted(const QString &text)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_@%+=:,./-]+$"));
    if (plain.match(text).hasMatch())
        return text;
    QString inner = text;
    return u'\'' + inner.replace(u'\'', escapedQuote()) + u'\'';
}

QString shellUnquoted(const QString &word)
{
    if (!word.startsWith(u'\''))
        return word;
    QString inner = word.mid(1, word.size() - 2);
    return inner.replace(escapedQuote(), QStringLiteral("'"));
}

QString ownersCommand(const QString &command, const QString &path)
{
    return QStringLiteral("%1%2 %3").arg(
        QFileInfo(path).ownerId() == ::geteuid() ? QString() : QStringLiteral("sudo "), command,
        shellQuoted(path));
}

QString moveAsideCommand(const QString &path)
{
    return ownersCommand(QStringLiteral("mv -T"), path) + u' '
        + shellQuoted(path + QStringLiteral(".old"));
}
