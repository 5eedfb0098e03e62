#include "browserpolicies.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

QString everything() { return QStringLiteral("*"); }

QString askFor(const QString &what)
{
    return QStringLiteral("ask whoever administers this machine to ") + what;
}

/// Chromium's lists of hosts, merged from all files.
void readHostLists(const QString &path, const QJsonObject &policies, BrowserPolicies &result,
                   bool &isAllowed)
{
    const QString host = BrowserTable::instance().hostName();
    const QString allowlist = QStringLiteral("NativeMessagingAllowlist");
    const QJsonArray blocked = policies[u"NativeMessagingBlocklist"].toArray();
    isAllowed = isAllowed || policies[allowlist].toArray().contains(host);
    if (blocked.contains(host) || blocked.contains(everything())) {
        result.blockedText =
            QStringLiteral("the policy \"NativeMessagingBlocklist\" in %1 forbids the host")
                .arg(path);
        result.blockedCure =
            askFor(QStringLiteral("add \"%1\" to \"%2\" in %3").arg(host, allowlist, path));
    }
    if (policies[u"NativeMessagingUserLevelHosts"] == false)
        result.userManifestsForbiddenBy = path;
}

/// Firefox has no policy on hosts, but two on extensions.
void readExtensionPolicies(const QString &path, const QJsonObject &policies, const QStringList &ids,
                           BrowserPolicies &result)
{
    const QJsonValue value = policies[u"ExtensionSettings"];
    const QJsonObject settings = value.isString()
        ? QJsonDocument::fromJson(value.toString().toUtf8()).object()
        : value.toObject();
    const QJsonArray removed = policies[u"Extensions"][u"Uninstall"].toArray();
    for (const QString &id : ids) {
        const QJsonObject own =
            (settings.contains(id) ? settings[id] : settings[everything()]).toObject();
        const bool isBlocked = own[u"installation_mode"].toString() == u"blocked";
        if (!isBlocked && !removed.contains(id))
            continue;
        result.blockedText =
            QStringLiteral("the policy \"%1\" in %2 forbids the extension")
                .arg(isBlocked ? QStringLiteral("ExtensionSettings") : QStringLiteral("Extensions"),
                     path);
        result.blockedCure = askFor(QStringLiteral("allow \"%1\" in %2").arg(id, path));
    }
}

} // namespace

BrowserPolicies BrowserPolicies::read(const BrowserInstallation &installation)
{
    const BrowserFamily &family = installation.browser().family;
    BrowserPolicies result;
    bool isHostAllowed = false;
    const QStringList folders = installation.policyFolders();
    for (const QString &folder : folders) {
        const QString pattern =
            family.isFirefox() ? QStringLiteral("policies.json") : QStringLiteral("*.json");
        const QFileInfoList files = QDir(folder).entryInfoList({pattern}, QDir::Files, QDir::Name);
        for (const QFileInfo &info : files) {
            const QString path = info.filePath();
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly)) {
                result.unreadable += path;
                continue;
            }
            const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
            if (!document.isObject())
                result.unreadable += path;
            else if (family.isFirefox())
                readExtensionPolicies(path, document[u"policies"].toObject(), family.ids, result);
            else
                readHostLists(path, document.object(), result, isHostAllowed);
        }
    }
    if (isHostAllowed) {
        result.blockedText.clear();
        result.blockedCure.clear();
    }
    return result;
}
