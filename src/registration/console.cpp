#include "console.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace {

bool showsColours()
{
    static const bool shows = ::isatty(STDOUT_FILENO) == 1
        && qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
    return shows;
}

} // namespace

void Console::print(const QString &line)
{
    std::fputs((line + u'\n').toLocal8Bit().constData(), stdout);
}

void Console::printError(const QString &line)
{
    std::fputs((QStringLiteral("kovalo-host: ") + line + u'\n').toLocal8Bit().constData(), stderr);
}

QString Console::wrapped(const QString &text)
{
    constexpr qsizetype width = 79;
    QString result;
    qsizetype lineStart = 0;
    const QStringList words = text.split(u' ');
    for (const QString &word : words) {
        const qsizetype lineBreak = word.indexOf(u'\n');
        const qsizetype length = lineBreak < 0 ? word.size() : lineBreak;
        if (!result.isEmpty() && result.size() - lineStart + 1 + length > width) {
            result += u'\n';
            lineStart = result.size();
        } else if (!result.isEmpty()) {
            result += u' ';
        }
        result += word;
        if (lineBreak >= 0)
            lineStart = result.lastIndexOf(u'\n') + 1;
    }
    return result;
}

void Console::printTable(const QList<QStringList> &rows)
{
    QList<qsizetype> widths;
    for (const QStringList &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths.at(i), row.at(i).size());
    }
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype i = 0; i + 1 < row.size(); ++i)
            line += row.at(i).leftJustified(widths.at(i) + 2);
        print(line + row.constLast());
    }
}

QString Console::coloured(const QString &text, Colour colour)
{
    if (!showsColours())
        return text;
    const char *code = nullptr;
    switch (colour) {
    case Colour::Green:
        code = "32";
        break;
    case Colour::Red:
        code = "1;31";
        break;
    case Colour::Yellow:
        code = "33";
        break;
    }
    return QStringLiteral("\033[%1m%2\033[0m").arg(QLatin1String(code), text);
}
