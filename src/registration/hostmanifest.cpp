#include "hostmanifest.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

QByteArray HostManifest::content(const BrowserFamily &family, const QString &hostPath)
{
    const BrowserTable &table = BrowserTable::instance();
    return QJsonDocument(QJsonObject{{nameKey(), table.hostName()},
                                     {QStringLiteral("description"), table.hostDescription()},
                                     {pathKey(), hostPath},
                                     {typeKey(), stdioType()},
                                     {family.idsKey, QJsonArray::fromStringList(family.ids)}})
        .toJson();
}

bool HostManifest::isOurs(const QJsonObject &manifest, const BrowserFamily &family)
{
    return manifest[nameKey()] == BrowserTable::instance().hostName()
        && allowsExtension(manifest, family);
}

bool HostManifest::isOurs(const QString &filePath, const BrowserFamily &family)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly)
        && isOurs(QJsonDocument::fromJson(file.readAll()).object(), family);
}

bool HostManifest::allowsExtension(const QJsonObject &manifest, const BrowserFamily &family)
{
    const QJsonArray allowed = manifest[family.idsKey].toArray();
    return std::all_of(family.ids.cbegin(), family.ids.cend(),
                       [&allowed](const QString &id) { return allowed.contains(id); });
}
