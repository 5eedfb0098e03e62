// The cookies for requests that the browser has not made, or whose headers it does not expose.

import { isWebAddress } from './addresses.js';

/**
 * The cookies that the browser would send if the user followed a link.
 * @param {string} documentUrl where the link is
 * @param {{id: number, url?: string}|undefined} tab whose cookie store to use: private windows and
 *     Firefox's containers have their own
 * @param {boolean} isInFrame whether the link is in a frame, and is followed there
 * @returns {Promise<string>} the header's value; '' without cookies, or if the tab was closed
 */
export async function cookiesForLink(url, documentUrl, tab, isInFrame = false) {
    const stores = await chrome.cookies.getAllCookieStores().catch(() => []);
    const store = stores.find(each => each.tabIds.includes(tab?.id));
    return store ? headerOf(url, documentUrl, store.id, isInFrame && tab.url ? tab.url : url) : '';
}

/** The same for a download that has just begun, in an ordinary window. */
export function cookiesForDownload(url, documentUrl) { return headerOf(url, documentUrl, undefined, url); }

async function headerOf(url, documentUrl, storeId, topLevelUrl) {
    const all = await chrome.cookies.getAll(
        { url, partitionKey: {}, ...(storeId && { storeId }) }).catch(() => []);
    const cookies = all.filter(each => isInPartition(each, url, topLevelUrl));
    const fits = [() => true, each => each.sameSite !== 'strict', each => each.sameSite === 'no_restriction'];
    const isWithin = isSameSite(url, topLevelUrl, cookies);
    const rank = isWithin ? Number(!isSameSite(url, documentUrl, cookies)) : 2;
    return cookies.filter(fits[rank]).sort((a, b) => b.path.length - a.path.length)
        .map(each => `${each.name}=${each.value}`).join('; ');
}

/** Whether a cookie is sent below a top-level site: unpartitioned, or in that site's partition. */
function isInPartition({ partitionKey }, url, topLevelUrl) {
    if (!partitionKey)
        return true;
    const { protocol, hostname } = new URL(topLevelUrl);
    const site = new URL(partitionKey.topLevelSite);
    return site.protocol === protocol && `.${hostname}`.endsWith(`.${site.hostname}`)
        && (url !== topLevelUrl || !partitionKey.hasCrossSiteAncestor);
}

/**
 * Whether two URLs certainly belong to the same site. Browsers reject cookies for a public suffix, so
 * two hosts within the domain of a cookie are same-site; without such a cookie, a host and its
 * subdomains are.
 */
function isSameSite(url, other, cookies) {
    if (!isWebAddress(other))
        return false;
    const [one, two] = [new URL(url), new URL(other)];
    const shared = cookies.filter(each => !each.hostOnly).map(each => each.domain.replace(/^\./, ''));
    return one.protocol === two.protocol
        && [one.hostname, two.hostname, ...shared].some(
            domain => [one, two].every(each => `.${each.hostname}`.endsWith(`.${domain}`)));
}
