#include "browserpolicies.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <algorithm>
#include <utility>

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

/// What the policies of all files say of the extension.
class ExtensionRules {
public:
    explicit ExtensionRules(QString id) : m_id(std::move(id)) { }

    void read(const QString &path, const QJsonObject &policies)
    {
        readSettings(path, policies[u"ExtensionSettings"]);
        // Chromium's lists.
        const QJsonArray blocked = policies[blocklist()].toArray();
        if (blocked.contains(everything()))
            m_rules[Precedence::ListForAll] = {
                true, blocklist(),
                QStringLiteral("add \"%1\" to \"%2\" in %3").arg(m_id, allowlist(), path), path};
        if (policies[allowlist()].toArray().contains(m_id))
            m_rules[Precedence::Allowlist] = {};
        if (blocked.contains(m_id))
            m_rules[Precedence::Blocklist] = removedFrom(blocklist(), path);
        const QJsonArray forced = policies[u"ExtensionInstallForcelist"].toArray();
        if (std::any_of(forced.begin(), forced.end(), [this](const QJsonValue &each) {
                return each.toString().section(u';', 0, 0) == m_id;
            }))
            m_rules[Precedence::Forcelist] = {};
        // Firefox's.
        if (policies[u"Extensions"][u"Uninstall"].toArray().contains(m_id))
            m_rules[Precedence::Uninstall] = removedFrom(QStringLiteral("Extensions"), path);
    }

    /// Fills in the result if the extension is forbidden.
    void tell(BrowserPolicies &result) const
    {
        if (m_rules.isEmpty() || !m_rules.last().isForbidden)
            return;
        const Rule &rule = m_rules.last();
        result.blockedText = QStringLiteral("the policy \"%1\" in %2 forbids the extension")
                                 .arg(rule.policy, rule.path);
        result.blockedCure = askFor(rule.cure);
    }

private:
    struct Rule {
        bool isForbidden = false;
        QString policy;
        QString cure;
        QString path;
    };
    /// What comes later wins.
    enum class Precedence {
        ListForAll,
        SettingsForAll,
        Allowlist,
        Blocklist,
        Forcelist,
        Settings,
        Uninstall
    };

    static QString blocklist() { return QStringLiteral("ExtensionInstallBlocklist"); }
    static QString allowlist() { return QStringLiteral("ExtensionInstallAllowlist"); }

    Rule removedFrom(const QString &policy, const QString &path) const
    {
        return {true, policy,
                QStringLiteral("take \"%1\" out of \"%2\" in %3").arg(m_id, policy, path), path};
    }

    /// Both families have this policy; Firefox also takes it as a text.
    void readSettings(const QString &path, const QJsonValue &value)
    {
        const QJsonObject settings = value.isString()
            ? QJsonDocument::fromJson(value.toString().toUtf8()).object()
            : value.toObject();
        for (auto each = settings.begin(); each != settings.end(); ++each) {
            const bool isForAll = each.key() == everything();
            if (!isForAll && !each.key().split(u',').contains(m_id))
                continue;
            const QString mode = each.value()[u"installation_mode"].toString();
            const bool isForbidden = mode == u"blocked" || mode == u"removed"
                || each.value()[u"blocked_permissions"].toArray().contains(
                    QStringLiteral("nativeMessaging"));
            // What says nothing of it leaves it to the policies before.
            if (isForbidden || !mode.isEmpty())
                m_rules[isForAll ? Precedence::SettingsForAll : Precedence::Settings] = {
                    isForbidden, QStringLiteral("ExtensionSettings"),
                    QStringLiteral("allow \"%1\" in %2").arg(m_id, path), path};
        }
    }

    QString m_id;
    QMap<Precedence, Rule> m_rules;
};

} // namespace

BrowserPolicies BrowserPolicies::read(const BrowserInstallation &installation)
{
    const BrowserFamily &family = installation.browser().family;
    BrowserPolicies result;
    bool isHostAllowed = false;
    ExtensionRules extension(family.extensionId());
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
            if (!document.isObject()) {
                result.unreadable += path;
            } else if (family.isFirefox()) { // it has no policy on hosts
                extension.read(path, document[u"policies"].toObject());
            } else {
                readHostLists(path, document.object(), result, isHostAllowed);
                extension.read(path, document.object());
            }
        }
    }
    if (isHostAllowed) {
        result.blockedText.clear();
        result.blockedCure.clear();
    }
    extension.tell(result);
    return result;
}
