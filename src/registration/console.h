#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The program's output on the terminal.
namespace Console {
/// A line on stdout.
void print(const QString &line);
/// A line on stderr, behind the program's name.
void complain(const QString &line);
/// The text in lines that fit a terminal, as Qt's lists of options do.
QString wrapped(const QString &text);
/// Rows of texts in columns.
void printTable(const QList<QStringList> &rows);

enum class Colour { Green, Red, Yellow };
/// The text in this colour, where stdout is a terminal that shows colours.
QString coloured(const QString &text, Colour colour);
} // namespace Console
