#pragma once

#include "browserinstallation.h"
#include "finding.h"

#include <QList>

/**
 * The state of the extension according to the browser's own files: whether it is installed and
 * enabled in a profile, and has access to web pages. Chromium writes them with some seconds' delay;
 * Firefox does not list temporary add-ons.
 */
class ExtensionInspection {
public:
    explicit ExtensionInspection(const BrowserInstallation &installation);

    /// Adds the links "extension-installed", "extension-enabled" and "site-access" to a chain.
    void addTo(Chain &chain) const;

private:
    /// The state in one profile, from worst to best.
    enum class State { Missing, Disabled, WithoutAccess, WithSomeAccess, Working };

    State stateInChromium(const QString &profile) const;
    State stateInFirefox(const QString &profile) const;

    BrowserInstallation m_installation;
    /// The system-wide folder that the browser loads it from; may be empty.
    bool m_isForEverybody;
    QList<State> m_profiles;
};
