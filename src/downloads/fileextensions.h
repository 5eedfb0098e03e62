#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

/// The file extensions of a kind, in lower case. kind: a key of filetypes.json, from which the
/// browser extension has them as well.
QSet<QByteArray> fileExtensions(const QString &kind);

/// What follows the last dot of a name, the whole of one without a dot. Of its letters those of
/// ASCII are in lower case.
QByteArray lowerCaseExtension(const QString &fileName);
