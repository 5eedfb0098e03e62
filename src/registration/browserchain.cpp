#include "browserchain.h"

#include "browserpolicies.h"
#include "extensioninspection.h"
#include "flatpaksandbox.h"
#include "manifestinspection.h"
#include "messagingproxy.h"
#include "programpaths.h"
#include "registrar.h"

#include <algorithm>

namespace {

using Kind = BrowserInstallation::Kind;
using Way = BrowserInstallation::Way;

QString browserFoundLink() { return QStringLiteral("browser-found"); }
QString policiesLink() { return QStringLiteral("policies"); }
QString sandboxLink() { return QStringLiteral("sandbox"); }

bool registered(const QList<Registrar::Result> &results)
{
    return !results.isEmpty()
        && std::none_of(results.cbegin(), results.cend(), [](const Registrar::Result &each) {
               return each.done == Registrar::Result::Done::Failed;
           });
}

QString registerCommand(const BrowserInstallation &installation, Way way)
{
    const QString command =
        QStringLiteral("%1 register %2%3")
            .arg(ProgramPaths::ownCommand(),
                 way == Way::Script ? QStringLiteral("--flatpak ") : QString(), installation.id());
    // "register" refuses to name a host that cannot be executed.
    const QString repair = ProgramPaths::hostRepair();
    return repair.isEmpty() ? command : repair + QStringLiteral(" && ") + command;
}

void checkPolicies(Chain &chain, const BrowserInstallation &installation,
                   const BrowserPolicies &policies, const ManifestInspection &manifest)
{
    if (!policies.blockedText.isEmpty()) {
        chain.broken(policiesLink(), policies.blockedText, policies.blockedCure);
    } else if (!policies.userManifestsForbiddenBy.isEmpty() && !manifest.found()) {
        chain.broken(
            policiesLink(),
            QStringLiteral("the policy \"NativeMessagingUserLevelHosts\" in %1 lets only "
                           "hosts count that are registered for everybody")
                .arg(policies.userManifestsForbiddenBy),
            QStringLiteral("sudo %1 register --everybody").arg(ProgramPaths::ownCommand()));
    } else if (!policies.unreadable.isEmpty()) {
        chain.notChecked(policiesLink(),
                         QStringLiteral("%1 cannot be read, or is no JSON")
                             .arg(policies.unreadable.join(QStringLiteral(", "))));
    } else if (installation.policyFolders().isEmpty()) {
        chain.notChecked(policiesLink(),
                         QStringLiteral("where this browser keeps policies is not known"));
    } else {
        chain.ok(policiesLink(), QStringLiteral("no policy forbids the host or the extension"));
    }
}

void checkSandbox(Chain &chain, const BrowserInstallation &installation, Way way)
{
    switch (installation.kind()) {
    case Kind::Native:
        chain.ok(sandboxLink(), QStringLiteral("it runs in no sandbox"));
        return;
    case Kind::Snap:
        if (way == Way::None)
            chain.broken(sandboxLink(),
                         QStringLiteral("its Snap starts no programs outside, so it cannot work"),
                         QStringLiteral("install the browser from a package or a Flatpak instead"));
        else
            chain.ok(sandboxLink(),
                     QStringLiteral("its Snap starts hosts outside, through the "
                                    "desktop's portal"));
        return;
    case Kind::Flatpak:
        break;
    }
    if (way == Way::Ordinary)
        chain.ok(sandboxLink(),
                 QStringLiteral("%1 is there to start hosts outside of the Flatpak")
                     .arg(MessagingProxy::serviceName()));
    else if (FlatpakSandbox::isGranted(installation.id(), installation.folders()))
        chain.ok(sandboxLink(), QStringLiteral("it may start programs outside of the Flatpak"));
    else
        chain.broken(
            sandboxLink(),
            QStringLiteral("it may not start programs outside of the Flatpak. (Allowing it "
                           "that lets it start any program as you)"),
            FlatpakSandbox::grantCommand(installation.id()));
}

} // namespace

Way wayNow(const BrowserInstallation &installation)
{
    const bool asksProxy =
        installation.kind() == Kind::Flatpak && installation.way() == Way::Ordinary;
    return asksProxy && !MessagingProxy::isReachable() ? Way::Script : installation.way();
}

BrowserChain BrowserChain::examine(const BrowserInstallation &installation)
{
    BrowserChain result{.chain = {.subject = QStringLiteral("browser"),
                                  .browser = installation.id(),
                                  .title = installation.title(),
                                  .findings = {}},
                        .hostPath = {},
                        .manifestPath = {},
                        .family = installation.browser().family};
    Chain &chain = result.chain;
    if (!installation.found()) {
        chain.broken(browserFoundLink(), QStringLiteral("this user has no such browser"),
                     QStringLiteral("install the browser, and start it once"));
        return result;
    }
    chain.ok(browserFoundLink(), QStringLiteral("this user has it"));

    const Way way = wayNow(installation);
    checkSandbox(chain, installation, way);
    if (way == Way::None)
        return result;
    ExtensionInspection(installation).addTo(chain);
    const BrowserPolicies policies = BrowserPolicies::read(installation);
    const ManifestInspection manifest(installation, way,
                                      policies.userManifestsForbiddenBy.isEmpty());
    checkPolicies(chain, installation, policies, manifest);
    manifest.addTo(chain, registerCommand(installation, way), [installation, way] {
        const Registrar registrar(ProgramPaths::host());
        return ProgramPaths::hostRepair().isEmpty()
            && registered(way == Way::Script ? registrar.registerScript(installation)
                                             : registrar.registerOrdinary(installation));
    });
    result.hostPath = manifest.hostPath();
    result.manifestPath = manifest.path();
    return result;
}
