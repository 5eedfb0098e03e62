#pragma once

#include "browserinstallation.h"
#include "finding.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>

/// The manifest that a browser goes by, and what is wrong with it.
class ManifestInspection {
public:
    /// Of a browser that goes by "way". "withUsers": whether the user's own manifests count.
    ManifestInspection(const BrowserInstallation &installation, BrowserInstallation::Way way,
                       bool withUsers);

    bool found() const { return !m_path.isEmpty(); }
    QString path() const { return m_path; }
    bool isForEverybody() const { return m_forEverybody; }
    /// The program that the browser starts in the end, where the manifest tells it.
    QString hostPath() const { return m_hostPath; }
    bool isWhole() const;
    /// Of what is wrong, the first; else empty.
    QString firstFault() const;

    /// Adds the links from "manifest-found" on to a chain.
    void addTo(Chain &chain, const QString &cure, const std::function<bool()> &mend) const;

private:
    struct Candidate {
        QString path;
        bool forEverybody;
    };
    QList<Candidate> candidates(BrowserInstallation::Way way, bool withUsers) const;
    void inspect(const Candidate &candidate);
    QJsonObject inspectFile();
    void inspectHost(const QString &named);

    struct Link {
        QString name;
        bool ok;
        QString text;
    };

    BrowserInstallation m_installation;
    bool m_throughScript;
    QString m_path;
    bool m_forEverybody = false;
    QString m_hostPath;
    /// Up to the first that the rest hangs on.
    QList<Link> m_links;
};
