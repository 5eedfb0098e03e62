#pragma once

class KeyStateWatcher;
class WebExtensionSettings;
class pmxKovBhIpcDownloadInfo;

/// The capture rule that leaves a caught download to the browser, as text for the log; null if
/// there is none. A null watcher means that the key is not pressed.
const char *captureRuleAgainst(const pmxKovBhIpcDownloadInfo &info,
                               const WebExtensionSettings &settings, KeyStateWatcher *watcher);

/// Whether the capture rules leave a caught download to the browser. Nonzero: they do.
int pmxIsCatchedDownloadShoudBeIgnored(const pmxKovBhIpcDownloadInfo *info,
                                       const WebExtensionSettings &settings,
                                       KeyStateWatcher *watcher);

/**
 * Whether a file extension matches one of the masks, which are separated by single spaces. Nonzero:
 * it does.
 *
 * Two spaces in a row contain an empty mask, and so does an empty list; it matches the empty
 * extension. A null pointer matches nothing.
 */
int IsExtInExtsStr(const char *exts, const char *ext);

/**
 * Whether a host name, or a domain above it, matches one of the masks, which are separated by
 * single spaces. Nonzero: it does. A null or empty host matches nothing.
 */
int IsServerInServersStr(const char *servers, const char *server);
