#include "manifestinspection.h"

#include "flatpaksandbox.h"
#include "hostmanifest.h"
#include "shellquoted.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

using Way = BrowserInstallation::Way;

QString manifestFoundLink() { return QStringLiteral("manifest-found"); }

/// In the browser's search order.
QStringList links()
{
    return {QStringLiteral("manifest-readable"), QStringLiteral("manifest-json"),
            QStringLiteral("manifest-name"),     QStringLiteral("manifest-type"),
            QStringLiteral("manifest-ids"),      QStringLiteral("manifest-path"),
            QStringLiteral("host-there"),        QStringLiteral("host-executable")};
}

/// Includes dangling symbolic links, on which the browser fails.
bool isThere(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymbolicLink();
}

} // namespace

ManifestInspection::ManifestInspection(const BrowserInstallation &installation, Way way,
                                       bool withUsers)
    : m_installation(installation), m_throughScript(way == Way::Script)
{
    const QList<Candidate> all = candidates(way, withUsers);
    for (const Candidate &candidate : all) {
        if (!isThere(candidate.path))
            continue;
        inspect(candidate);
        // Chromium uses the first that exists; Firefox the first that is valid.
        if (isIntact() || !installation.browser().family.isFirefox())
            return;
    }
    const auto first = std::find_if(all.cbegin(), all.cend(),
                                    [](const Candidate &each) { return isThere(each.path); });
    if (first != all.cend())
        inspect(*first);
}

QList<ManifestInspection::Candidate> ManifestInspection::candidates(Way way, bool withUsers) const
{
    const QString name = u'/' + BrowserTable::instance().manifestFileName();
    const QStringList users =
        way == Way::Script ? m_installation.scriptFolders() : m_installation.manifestFolders();
    QList<Candidate> all;
    if (withUsers) {
        for (const QString &folder : users)
            all.append({folder + name, false});
    }
    if (way == Way::Ordinary) {
        const QStringList folders = m_installation.everybodyFolders();
        for (const QString &folder : folders)
            all.append({folder + name, true});
    }
    return all;
}

void ManifestInspection::inspect(const Candidate &candidate)
{
    m_path = candidate.path;
    m_forEverybody = candidate.forEverybody;
    m_links.clear();
    m_hostPath.clear();
    const QJsonObject manifest = inspectFile();
    if (manifest.isEmpty())
        return;

    const BrowserFamily &family = m_installation.browser().family;
    const QString name = BrowserTable::instance().hostName();
    const auto add = [this](bool ok, const QString &good, const QString &bad) {
        m_links.append({links().at(m_links.size()), ok, ok ? good : bad});
    };
    add(manifest[HostManifest::nameKey()] == name, QStringLiteral("it is for \"%1\"").arg(name),
        QStringLiteral("its \"name\" is not \"%1\", the name of its file").arg(name));
    add(manifest[HostManifest::typeKey()] == HostManifest::stdioType(),
        QStringLiteral("its \"type\" is \"stdio\""),
        QStringLiteral("its \"type\" is not \"stdio\""));
    add(HostManifest::allowsExtension(manifest, family),
        QStringLiteral("the extension is allowed to start the host"),
        QStringLiteral("\"%1\" does not name the extension %2")
            .arg(family.idsKey, family.ids.join(u' ')));
    const QString named = manifest[HostManifest::pathKey()].toString();
    add(QDir::isAbsolutePath(named), QStringLiteral("its \"path\" is absolute"),
        QStringLiteral("its \"path\" is not absolute"));
    if (QDir::isAbsolutePath(named))
        inspectHost(named);
}

QJsonObject ManifestInspection::inspectFile()
{
    QFile file(m_path);
    const bool isReadable = file.open(QIODevice::ReadOnly);
    m_links.append({links().at(0), isReadable,
                    isReadable ? QStringLiteral("it can be read")
                        : QFileInfo(m_path).isDir()
                        ? QStringLiteral("a folder is in its place")
                        : QStringLiteral("it cannot be read: ") + file.errorString()});
    if (!isReadable)
        return {};
    QJsonParseError error;
    QJsonObject manifest = QJsonDocument::fromJson(file.readAll(), &error).object();
    m_links.append(
        {links().at(1), !manifest.isEmpty(),
         !manifest.isEmpty() ? QStringLiteral("it is JSON")
                             : QStringLiteral("it is no JSON object: ")
                 + (error.error == QJsonParseError::NoError ? QStringLiteral("something else")
                                                            : error.errorString())});
    return manifest;
}

void ManifestInspection::inspectHost(const QString &named)
{
    QString host = named;
    QString what = QStringLiteral("the host ");
    bool isThere = QFileInfo(named).isFile();
    bool isExecutable = QFileInfo(named).isExecutable();
    if (m_throughScript && isThere) {
        QFile script(named);
        host = script.open(QIODevice::ReadOnly) ? FlatpakSandbox::hostOfScript(script.readAll())
                                                : QString();
        if (host.isEmpty()) {
            m_links.append({links().at(6), false,
                            QStringLiteral("%1 is not the script that starts the host outside of "
                                           "the sandbox")
                                .arg(named)});
            return;
        }
        isThere = QFileInfo(host).isFile();
        what = isExecutable ? what : QStringLiteral("the script ");
        isExecutable = isExecutable && QFileInfo(host).isExecutable();
    }
    m_links.append({links().at(6), isThere,
                    isThere ? QStringLiteral("the host is %1").arg(host)
                            : QStringLiteral("there is no host at %1").arg(host)});
    if (!isThere)
        return;
    m_hostPath = host;
    m_links.append({links().at(7), isExecutable,
                    isExecutable ? QStringLiteral("the host may be executed")
                                 : what + QStringLiteral("may not be executed")});
}

bool ManifestInspection::isIntact() const { return found() && firstFault().isEmpty(); }

QString ManifestInspection::firstFault() const
{
    const auto fault =
        std::find_if(m_links.cbegin(), m_links.cend(), [](const Link &each) { return !each.ok; });
    return fault == m_links.cend() ? QString() : fault->text;
}

void ManifestInspection::addTo(Chain &chain, const QString &cure,
                               const std::function<bool()> &repair) const
{
    const QStringList all = links();
    if (!found()) {
        chain.broken(manifestFoundLink(),
                     QStringLiteral("no manifest tells the browser of the host"), cure, repair);
        chain.notReached(all, QStringLiteral("there is no manifest"));
        return;
    }
    chain.ok(manifestFoundLink(),
             QStringLiteral("the manifest is %1%2")
                 .arg(m_path, m_forEverybody ? QStringLiteral(", for everybody") : QString()));
    // "register" removes no folder.
    const QString wholeCure =
        QFileInfo(m_path).isDir() ? moveAsideCommand(m_path) + QStringLiteral(" && ") + cure : cure;
    for (const Link &link : m_links) {
        if (link.ok)
            chain.ok(link.name, link.text);
        else
            chain.broken(link.name, link.text, wholeCure, repair);
    }
    chain.notReached(all.mid(m_links.size()), QStringLiteral("it hangs on the one before"));
}
