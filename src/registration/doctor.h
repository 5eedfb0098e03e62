#pragma once

#include "browserinstallation.h"
#include "finding.h"

#include <QList>

/// Walks all the links between browsers and a finished download, and stops at none.
class Doctor {
public:
    /// "timeoutMs" is how long the host and the application may take to answer.
    Doctor(QList<BrowserInstallation> browsers, int timeoutMs);

    /// Takes a second or so; needs the application object.
    void examine();
    /// Mends what was found broken and needs no decision of the user's; returns whether anything
    /// could be mended. What is so then has to be examined again.
    bool mend() const;

    const QList<Chain> &chains() const { return m_chains; }
    bool wouldDownloadArrive() const;

private:
    const QList<BrowserInstallation> m_browsers;
    const int m_timeoutMs;
    QList<Chain> m_chains;
};
