#pragma once

#include <QString>

/// Quotes the text as one word of a shell command, if necessary.
QString shellQuoted(const QString &text);
/// The inverse of shellQuoted().
QString shellUnquoted(const QString &word);
/// "COMMAND PATH", with sudo when the file belongs to another user.
QString ownersCommand(const QString &command, const QString &path);
/// Renames the file or folder to PATH.old, with sudo when it belongs to another user.
QString moveAsideCommand(const QString &path);
