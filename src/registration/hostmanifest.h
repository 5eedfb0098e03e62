#pragma once

#include "browsertable.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// The file by which a browser finds the host.
namespace HostManifest {
/// What it is to say: that the program at "hostPath" is the host.
QByteArray content(const BrowserFamily &family, const QString &hostPath);
/// Whether it names our host, and our extension as one that may start it.
bool isOurs(const QJsonObject &manifest, const BrowserFamily &family);
/// Whether the file there is ours; false when there is none.
bool isOurs(const QString &filePath, const BrowserFamily &family);
/// Whether the extension is among those that may start the host.
bool allowsExtension(const QJsonObject &manifest, const BrowserFamily &family);

inline QString nameKey() { return QStringLiteral("name"); }
inline QString typeKey() { return QStringLiteral("type"); }
inline QString pathKey() { return QStringLiteral("path"); }
/// The one type that there is: messages on stdin and stdout.
inline QString stdioType() { return QStringLiteral("stdio"); }
} // namespace HostManifest
