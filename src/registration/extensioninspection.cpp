#include "extensioninspection.h"

#include "programpaths.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

QString installedLink() { return QStringLiteral("extension-installed"); }
QString enabledLink() { return QStringLiteral("extension-enabled"); }
QString accessLink() { return QStringLiteral("site-access"); }

/// Chromium's mark of an externally installed extension that the user has removed.
constexpr int removedState = 2;

/// The profile folders that contain one of these files: the browser's folder itself, or folders
/// directly below it.
QStringList profilesWith(const QStringList &files, const QStringList &roots)
{
    QStringList profiles;
    for (const QString &root : roots) {
        const QStringList folders = {root, root + QStringLiteral("/firefox")};
        for (const QString &folder : folders) {
            QStringList candidates = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            candidates.append(QStringLiteral("."));
            for (const QString &each : std::as_const(candidates)) {
                const QDir candidate(folder + u'/' + each);
                if (std::any_of(files.cbegin(), files.cend(),
                                [&](const QString &file) { return candidate.exists(file); }))
                    profiles.append(candidate.path());
            }
        }
    }
    return profiles;
}

/// Empty when the file does not exist or is not JSON.
QJsonObject readObject(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

/// The browser's page on which the user manages extensions.
QString pageOf(const BrowserInstallation &installation)
{
    return installation.browser().family.isFirefox() ? QStringLiteral("about:addons")
                                                     : QStringLiteral("chrome://extensions");
}

QString installCure(const BrowserInstallation &installation)
{
    QString folder = ProgramPaths::unpackedExtension();
    // Browsers that do not load the package's extension by themselves can load its folder.
    if (folder.isEmpty() && installation.extensionForEverybody().isEmpty())
        folder = ProgramPaths::packagedExtension();
    if (!folder.isEmpty())
        return QStringLiteral("load the folder %1 on the browser's page %2")
            .arg(folder,
                 installation.browser().family.isFirefox()
                     ? QStringLiteral("about:debugging#/runtime/this-firefox, each time it starts")
                     : pageOf(installation) + QStringLiteral(", in developer mode"));
    if (!installation.extensionForEverybody().isEmpty())
        return QStringLiteral(
            "sudo apt-get install kovalo-browser-extension, and start the browser "
            "again");
    return QStringLiteral("install the extension on the browser's page %1, or from its store")
        .arg(pageOf(installation));
}

/// For match patterns such as "https://*/*".
bool meansAllSites(const QJsonArray &patterns)
{
    return patterns.contains(QStringLiteral("<all_urls>"))
        || patterns.contains(QStringLiteral("*://*/*"))
        || (patterns.contains(QStringLiteral("http://*/*"))
            && patterns.contains(QStringLiteral("https://*/*")));
}

} // namespace

ExtensionInspection::ExtensionInspection(const BrowserInstallation &installation)
    : m_installation(installation),
      m_isForEverybody(QFileInfo::exists(installation.extensionForEverybody()))
{
    if (installation.browser().family.isFirefox()) {
        const QStringList profiles =
            profilesWith({QStringLiteral("extensions.json")}, installation.profiles());
        for (const QString &each : profiles)
            m_profiles.append(stateInFirefox(each));
        return;
    }
    const QStringList profiles =
        profilesWith({QStringLiteral("Preferences"), QStringLiteral("Secure Preferences")},
                     installation.profiles());
    for (const QString &each : profiles) {
        // Chromium's internal profiles, which load no extensions.
        if (!each.endsWith(u"/System Profile") && !each.endsWith(u"/Guest Profile"))
            m_profiles.append(stateInChromium(each));
    }
}

ExtensionInspection::State ExtensionInspection::stateInChromium(const QString &profile) const
{
    const QString id = m_installation.browser().family.extensionId();
    QJsonObject record;
    for (const QString &file :
         {QStringLiteral("/Preferences"), QStringLiteral("/Secure Preferences")}) {
        const QJsonObject extensions = readObject(profile + file)[u"extensions"].toObject();
        const QJsonValue found = extensions[u"settings"].toObject()[id];
        if (found.isObject())
            record = found.toObject();
    }
    const QString path = record[u"path"].toString();
    const bool isGone = QDir::isAbsolutePath(path) && !QFileInfo::exists(path);
    if (record.isEmpty() || isGone || record[u"state"].toInt() == removedState)
        return State::Missing;
    // Newer versions have a list of reasons, older ones a number and a separate state.
    const QJsonValue reasons = record[u"disable_reasons"];
    if (record[u"state"].toInt(1) == 0 || reasons.toInt() != 0 || !reasons.toArray().isEmpty())
        return State::Disabled;
    if (!record[u"withholding_permissions"].toBool())
        return State::Working;
    const QJsonArray sites =
        record[u"runtime_granted_permissions"].toObject()[u"explicit_host"].toArray();
    if (meansAllSites(sites))
        return State::Working;
    return sites.isEmpty() ? State::WithoutAccess : State::WithSomeAccess;
}

ExtensionInspection::State ExtensionInspection::stateInFirefox(const QString &profile) const
{
    const QString id = m_installation.browser().family.extensionId();
    const QJsonArray all =
        readObject(profile + QStringLiteral("/extensions.json"))[u"addons"].toArray();
    const auto found = std::find_if(all.cbegin(), all.cend(),
                                    [&id](const auto &each) { return each[u"id"] == id; });
    if (found == all.cend())
        return State::Missing;
    if (!(*found)[u"active"].toBool())
        return State::Disabled;
    const QJsonValue given =
        readObject(profile + QStringLiteral("/extension-preferences.json"))[id][u"origins"];
    const QJsonArray sites = given.toArray();
    if (!given.isArray() || meansAllSites(sites)) // stored elsewhere by other versions
        return State::Working;
    return sites.isEmpty() ? State::WithoutAccess : State::WithSomeAccess;
}

void ExtensionInspection::addTo(Chain &chain) const
{
    const QStringList further = {enabledLink(), accessLink()};
    if (m_profiles.isEmpty() && m_isForEverybody) {
        chain.ok(installedLink(), QStringLiteral("the browser loads it when it is started"));
        chain.notReached(further, QStringLiteral("the browser was not started yet"));
        return;
    }
    const State best = m_profiles.isEmpty()
        ? State::Missing
        : *std::max_element(m_profiles.cbegin(), m_profiles.cend());
    if (best == State::Missing) {
        if (m_isForEverybody)
            chain.broken(installedLink(), QStringLiteral("the browser has not loaded it yet"),
                         QStringLiteral("close all windows of the browser, and start it again"));
        else
            chain.broken(installedLink(),
                         QStringLiteral("the extension is not installed%1")
                             .arg(m_installation.browser().family.isFirefox()
                                      ? QStringLiteral(" (one that is loaded for the moment does "
                                                       "not show)")
                                      : QString()),
                         installCure(m_installation));
        chain.notReached(further, QStringLiteral("there is no extension"));
        return;
    }
    const auto missing = std::count(m_profiles.cbegin(), m_profiles.cend(), State::Missing);
    chain.ok(installedLink(),
             QStringLiteral("the extension is installed%1")
                 .arg(missing == 0 ? QString()
                                   : QStringLiteral(", but not in %1 of %2 profiles")
                                         .arg(QString::number(missing),
                                              QString::number(m_profiles.size()))));
    if (best == State::Disabled) {
        chain.broken(
            enabledLink(), QStringLiteral("it is turned off"),
            QStringLiteral("turn it on, on the browser's page %1").arg(pageOf(m_installation)));
        chain.notReached({accessLink()}, QStringLiteral("it is turned off"));
        return;
    }
    chain.ok(enabledLink(), QStringLiteral("it is turned on"));
    if (best == State::WithoutAccess)
        chain.broken(accessLink(), QStringLiteral("the browser withholds access to pages from it"),
                     QStringLiteral("allow it access to all sites, on the browser's page %1")
                         .arg(pageOf(m_installation)));
    else if (best == State::WithSomeAccess)
        chain.ok(accessLink(),
                 QStringLiteral("it may see some sites only; downloads from others stay in the "
                                "browser"));
    else
        chain.ok(accessLink(), QStringLiteral("it may see which downloads begin on pages"));
}
