#pragma once

#include "browserinstallation.h"
#include "finding.h"

/// The way that the browser goes as things are now: one that asks the proxy goes by a script while
/// there is no proxy.
BrowserInstallation::Way wayNow(const BrowserInstallation &installation);

/// The links of one browser, up to the host that it starts.
struct BrowserChain {
    Chain chain;
    /// The host that the browser would start; empty when that cannot be told.
    QString hostPath;
    /// The manifest that names it.
    QString manifestPath;
    BrowserFamily family;

    static BrowserChain examine(const BrowserInstallation &installation);
};
