#include "capturerules.h"

#include "domainfromhttpurl.h"
#include "keystatewatcher.h"
#include "pmxkovbhipcdownloadinfo.h"
#include "webextensionsettings.h"
#include "wildcardmatch.h"

#include <string>
#include <string_view>

namespace {

/// Whether the predicate holds for any piece of the list; pieces may be empty.
template <typename Predicate> bool anyPiece(std::string_view list, Predicate predicate)
{
    for (;;) {
        const std::size_t space = list.find(' ');
        if (predicate(std::string(list.substr(0, space))))
            return true;
        if (space == std::string_view::npos)
            return false;
        list.remove_prefix(space + 1);
    }
}

bool isTooSmall(const pmxKovBhIpcDownloadInfo &info,
                const WebExtensionBrowserMonitorSettings &monitor)
{
    return info.fileSize != pmxKovBhIpcDownloadInfo::UnknownFileSize
        && info.fileSize < static_cast<std::uint64_t>(monitor.skipSmallerThan);
}

bool hasUnwantedExtension(const pmxKovBhIpcDownloadInfo &info,
                          const WebExtensionBrowserMonitorSettings &monitor)
{
    const std::size_t dot = info.suggestedName.rfind('.');
    return dot != std::string::npos
        && IsExtInExtsStr(monitor.skipExtensions.c_str(), info.suggestedName.c_str() + dot + 1);
}

bool isFromUnwantedServer(const pmxKovBhIpcDownloadInfo &info,
                          const WebExtensionBrowserMonitorSettings &monitor)
{
    return monitor.skipServersEnabled && !monitor.skipServers.empty()
        && IsServerInServersStr(monitor.skipServers.c_str(), domainFromHttpUrl(info.url).c_str());
}

} // namespace

const char *captureRuleAgainst(const pmxKovBhIpcDownloadInfo &info,
                               const WebExtensionSettings &settings, KeyStateWatcher *watcher)
{
    const WebExtensionBrowserMonitorSettings &monitor = settings.browser.monitor;
    if (!monitor.enable)
        return "capture is switched off";
    if (isTooSmall(info, monitor))
        return "the file is too small";
    if (monitor.skipIfKeyPressed && watcher && watcher->isPressed(false))
        return "the key is pressed";
    if (hasUnwantedExtension(info, monitor))
        return "its extension is skipped";
    if (isFromUnwantedServer(info, monitor))
        return "its server is skipped";
    return nullptr;
}

int pmxIsCatchedDownloadShoudBeIgnored(const pmxKovBhIpcDownloadInfo *info,
                                       const WebExtensionSettings &settings,
                                       KeyStateWatcher *watcher)
{
    return captureRuleAgainst(*info, settings, watcher) != nullptr;
}

int IsExtInExtsStr(const char *exts, const char *ext)
{
    if (!exts || !ext)
        return 0;
    return anyPiece(
        exts, [ext](const std::string &mask) { return strcmpi_m(ext, mask.c_str()) != nullptr; });
}

int IsServerInServersStr(const char *servers, const char *server)
{
    if (!servers || !server || !*server)
        return 0;
    return anyPiece(servers, [server](const std::string &mask) {
        return strcmpi_m(server, mask.c_str()) || strcmpi_m(server, ("*." + mask).c_str());
    });
}
