#include "doctor.h"

#include "browserchain.h"
#include "chains.h"
#include "programpaths.h"

#include <QFileInfo>
#include <QMap>
#include <QSet>

#include <algorithm>
#include <utility>

namespace {

/// The arguments that the browser passes to the host.
QStringList argumentsOf(const BrowserChain &browser)
{
    return browser.family.isFirefox() ? QStringList{browser.manifestPath} + browser.family.ids
                                      : browser.family.ids;
}

} // namespace

Doctor::Doctor(QList<BrowserInstallation> browsers, int timeoutMs)
    : m_browsers(std::move(browsers)), m_timeoutMs(timeoutMs)
{
}

void Doctor::examine()
{
    m_chains.clear();
    // Maps the path of each host to the arguments of a browser that starts it.
    QMap<QString, QStringList> hosts;
    for (const BrowserInstallation &each : m_browsers) {
        const BrowserChain browser = BrowserChain::examine(each);
        m_chains.append(browser.chain);
        if (!browser.hostPath.isEmpty())
            hosts.insert(browser.hostPath, argumentsOf(browser));
    }
    if (m_browsers.isEmpty()) {
        Chain none{.subject = QStringLiteral("browser"),
                   .browser = {},
                   .title = QStringLiteral("Browsers"),
                   .findings = {}};
        none.broken(QStringLiteral("browser-found"),
                    QStringLiteral("none of the browsers that are known was ever started by this "
                                   "user"),
                    QStringLiteral("start the browser once; \"%1 browsers\" lists those that are "
                                   "known")
                        .arg(ProgramPaths::ownCommand()));
        m_chains.append(none);
    }
    if (hosts.isEmpty())
        hosts.insert(ProgramPaths::host(), QStringList());

    QSet<QString> hostFolders;
    for (auto host = hosts.cbegin(); host != hosts.cend(); ++host) {
        m_chains.append(examineHost(host.key(), host.value(), m_timeoutMs));
        hostFolders.insert(QFileInfo(QFileInfo(host.key()).canonicalFilePath()).path());
    }
    for (const QString &folder : std::as_const(hostFolders)) {
        m_chains.append(examineStorage(folder));
        m_chains.append(examineApplication(folder, m_timeoutMs));
    }
}

bool Doctor::repair() const
{
    bool mended = false;
    for (const Chain &chain : m_chains) {
        // One repair often fixes several links of a chain.
        for (const Finding &finding : chain.findings) {
            if (finding.repair && finding.repair())
                mended = true;
        }
    }
    return mended;
}

bool Doctor::wouldDownloadArrive() const
{
    return std::all_of(m_chains.cbegin(), m_chains.cend(),
                       [](const Chain &chain) { return chain.isIntact(); });
}
