#pragma once

class KeyStateWatcher;
class WebExtensionSettings;
class pmxKovBhIpcDownloadInfo;

/// The rule of the user's that leaves a download that the browser was about to make to the browser,
/// in words for the log; null when none does. A null watcher stands for a key that is not pressed.
const char *captureRuleAgainst(const pmxKovBhIpcDownloadInfo &info,
                               const WebExtensionSettings &settings, KeyStateWatcher *watcher);

/// Whether the user's rules leave a download that the browser was about to make to the browser.
/// Not zero: they do.
int pmxIsCatchedDownloadShoudBeIgnored(const pmxKovBhIpcDownloadInfo *info,
                                       const WebExtensionSettings &settings,
                                       KeyStateWatcher *watcher);

/**
 * Whether a file extension matches one of the masks, which single spaces separate. Not zero: it
 * does.
 *
 * Two spaces in a row hold an empty mask, and so does an empty list; it matches the empty
 * extension. A null pointer matches nothing.
 */
int IsExtInExtsStr(const char *exts, const char *ext);

/**
 * Whether a host is one of the masks, which single spaces separate, or lies below one of them. Not
 * zero: it is or does. A null or empty host matches nothing.
 */
int IsServerInServersStr(const char *servers, const char *server);
