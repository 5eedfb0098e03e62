// Whether the extension has access to web pages. Without it, it cannot see requests or capture downloads.
// Browsers let the user withhold that, for all sites or some, at any time.

const { host_permissions: sites } = chrome.runtime.getManifest();

/** The sites to which the extension has access. */
export const access = { all: 'all', some: 'some', none: 'none' };

/** Resolves with the current access, one of the values above. */
export async function siteAccess() {
    if (await chrome.permissions.contains({ origins: sites }))
        return access.all;
    const { origins = [] } = await chrome.permissions.getAll();
    return origins.length > 0 ? access.some : access.none;
}

/** Requests access to all sites. Must be called in a click handler (user activation). */
export function requestSiteAccess() { return chrome.permissions.request({ origins: sites }); }

/** Calls back with the access, now and after each change. Call it when the script starts. */
export function followSiteAccess(callback) {
    const tell = () => siteAccess().then(callback);
    chrome.permissions.onAdded.addListener(tell);
    chrome.permissions.onRemoved.addListener(tell);
    tell();
}
