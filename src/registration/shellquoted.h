#pragma once

#include <QString>

/// The text as one word of a shell's command line, quoted only where it must be.
QString shellQuoted(const QString &text);
/// The text of a word that was quoted by shellQuoted().
QString shellUnquoted(const QString &word);
