#pragma once

#include "browsertable.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// The native-messaging manifest, by which a browser finds the host.
namespace HostManifest {
/// The manifest of the host at "hostPath".
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
/// The only type that browsers define: messages on stdin and stdout.
inline QString stdioType() { return QStringLiteral("stdio"); }
} // namespace HostManifest
