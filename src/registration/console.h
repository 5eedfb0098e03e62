#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The program's output on the terminal.
namespace Console {
/// A line on stdout.
void print(const QString &line);
/// A line on stderr, prefixed with the program's name.
void printError(const QString &line);
/// Wraps the text to the width that Qt uses for lists of options.
QString wrapped(const QString &text);
/// Formats rows as aligned columns.
void printTable(const QList<QStringList> &rows);

enum class Colour { Green, Red, Yellow };
/// Colours the text if stdout is a terminal with colours.
QString coloured(const QString &text, Colour colour);
} // namespace Console
