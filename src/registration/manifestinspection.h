#pragma once

#include "browserinstallation.h"
#include "finding.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>

/// The manifest that a browser uses, and its faults.
class ManifestInspection {
public:
    /// "withUsers": whether the user's own manifests are valid.
    ManifestInspection(const BrowserInstallation &installation, BrowserInstallation::Way way,
                       bool withUsers);

    bool found() const { return !m_path.isEmpty(); }
    QString path() const { return m_path; }
    bool isForEverybody() const { return m_forEverybody; }
    /// The host that the browser starts in the end; may be empty.
    QString hostPath() const { return m_hostPath; }
    bool isIntact() const;
    /// The first fault; empty when there is none.
    QString firstFault() const;

    /// Adds the links from "manifest-found" on to a chain.
    void addTo(Chain &chain, const QString &cure, const std::function<bool()> &repair) const;

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
    /// Up to the first broken one that the others depend on.
    QList<Link> m_links;
};
