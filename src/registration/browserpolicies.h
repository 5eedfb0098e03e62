#pragma once

#include "browserinstallation.h"

#include <QString>
#include <QStringList>

/// The administrator's policies for a browser.
struct BrowserPolicies {
    /// The policies that block the host or the extension; empty when none does.
    QString blockedText;
    QString blockedCure;
    /// The file with the policy that only system-wide manifests are valid; empty without one.
    QString userManifestsForbiddenBy;
    /// Policy files that cannot be read, or are not JSON.
    QStringList unreadable;

    static BrowserPolicies read(const BrowserInstallation &installation);
};
