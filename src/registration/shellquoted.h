#pragma once

#include <QString>

/// Quotes the text as one word of a shell command, if necessary.
QString shellQuoted(const QString &text);
/// The inverse of shellQuoted().
QString shellUnquoted(const QString &word);
