#pragma once

#include "browserinstallation.h"

#include <QString>
#include <QStringList>

/// What those who administer the machine have forbidden a browser.
struct BrowserPolicies {
    /// The policies that keep the host or the extension out; empty when nothing does.
    QString blockedText;
    QString blockedCure;
    /// Only manifests for everybody count, by the policy in this file; empty when the user's do.
    QString userManifestsForbiddenBy;
    /// Files of policies that cannot be read, or are no JSON.
    QStringList unreadable;

    static BrowserPolicies read(const BrowserInstallation &installation);
};
