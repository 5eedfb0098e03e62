#pragma once

#include "browserinstallation.h"
#include "finding.h"

#include <QList>

/// Checks every link of the chain from the browsers to a finished download.
class Doctor {
public:
    /// "timeoutMs" limits each wait for an answer of the host or the application.
    Doctor(QList<BrowserInstallation> browsers, int timeoutMs);

    /// Takes a second or so; needs the application object.
    void examine();
    /// Repairs the broken links that need no decision by the user; returns whether any could be
    /// repaired. Then examine() has to run again.
    bool repair() const;

    const QList<Chain> &chains() const { return m_chains; }
    bool wouldDownloadArrive() const;

private:
    const QList<BrowserInstallation> m_browsers;
    const int m_timeoutMs;
    QList<Chain> m_chains;
};
