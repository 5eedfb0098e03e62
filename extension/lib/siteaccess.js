// Whether the user lets the extension see what pages ask for, without which no download can be judged.
// Browsers let the user withhold that, for all sites or some, at any time.

const { host_permissions: sites } = chrome.runtime.getManifest();

/** Of how many sites. */
export const access = { all: 'all', some: 'some', none: 'none' };

/** How it is now, as one of the words above. */
export async function siteAccess() {
    if (await chrome.permissions.contains({ origins: sites }))
        return access.all;
    const { origins = [] } = await chrome.permissions.getAll();
    return origins.length > 0 ? access.some : access.none;
}

/** Asks the user for all. Must be called in a click handler (user activation). */
export function requestSiteAccess() { return chrome.permissions.request({ origins: sites }); }

/** Calls back with how it is, now and after each change. To be called at once when the script starts. */
export function followSiteAccess(callback) {
    const tell = () => siteAccess().then(callback);
    chrome.permissions.onAdded.addListener(tell);
    chrome.permissions.onRemoved.addListener(tell);
    tell();
}
