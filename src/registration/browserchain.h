#pragma once

#include "browserinstallation.h"
#include "finding.h"

/// How the browser currently finds the host: one that uses the proxy needs a script while there is
/// no proxy.
BrowserInstallation::Way wayNow(const BrowserInstallation &installation);

/// Checks one browser, up to the host that it starts.
struct BrowserChain {
    Chain chain;
    /// The host that the browser would start; empty when unknown.
    QString hostPath;
    /// The manifest that names it.
    QString manifestPath;
    BrowserFamily family;

    static BrowserChain examine(const BrowserInstallation &installation);
};
