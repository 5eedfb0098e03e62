#pragma once

#include "browserinstallation.h"
#include "finding.h"

#include <QList>

/**
 * What the browser's own files tell of the extension: whether it is installed and enabled in a
 * profile, and may see what pages ask for. A profile of Chromium tells with some seconds' delay,
 * one of Firefox never tells of an extension that is loaded for the moment.
 */
class ExtensionInspection {
public:
    explicit ExtensionInspection(const BrowserInstallation &installation);

    /// Adds the links "extension-installed", "extension-enabled" and "site-access" to a chain.
    void addTo(Chain &chain) const;

private:
    /// Of one profile, from bad to good.
    enum class State { Missing, Disabled, WithoutAccess, WithSomeAccess, Working };

    State stateInChromium(const QString &profile) const;
    State stateInFirefox(const QString &profile) const;

    BrowserInstallation m_installation;
    /// Where the browser loads it from for every user; empty when it does not.
    bool m_isForEverybody;
    QList<State> m_profiles;
};
