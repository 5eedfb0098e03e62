// HTTP headers, as browsers give them to extensions and as the host takes them: as raw text.

import { isWebAddress, withoutFragment } from './addresses.js';

/** @param {{name: string, value?: string, binaryValue?: number[]}[]} headers */
export function headerBlock(headers = []) {
    return headers.map(({ name, value, binaryValue }) =>
        `${name}: ${value ?? String.fromCharCode(...binaryValue ?? [])}\r\n`).join('');
}

/** The value of the first header of a name in lower case; '' when there is none. */
export function headerValue(headers = [], name) {
    return headers.find(each => each.name.toLowerCase() === name)?.value ?? '';
}

/** The id of the cookies that a tab has; private windows and Firefox's containers have their own. */
export async function cookieStoreOf(tabId) {
    const stores = await chrome.cookies.getAllCookieStores().catch(() => []);
    return stores.find(each => each.tabIds.includes(tabId))?.id ?? '';
}

/** The cookies that this browser would send to an address, as the header's value. */
export async function cookiesFor(url, storeId = '') {
    const cookies = await chrome.cookies.getAll({ url, ...(storeId && { storeId }) }).catch(() => []);
    return cookies.map(cookie => `${cookie.name}=${cookie.value}`).join('; ');
}

/** What this browser would send for something on a tab's page, had it asked the server just now. */
export async function assumedHeaders(url, documentUrl, tabId) {
    return headerBlock([
        { name: 'User-Agent', value: navigator.userAgent },
        { name: 'Referer', value: usualReferrer(url, documentUrl) },
        { name: 'Cookie', value: await cookiesFor(url, await cookieStoreOf(tabId)) },
    ].filter(each => each.value));
}

/** The referrer that a document sends when it wishes nothing else. */
export function usualReferrer(url, documentUrl) {
    if (!isWebAddress(documentUrl) || (documentUrl.startsWith('https:') && url.startsWith('http:')))
        return '';
    const { origin } = new URL(documentUrl);
    return url.startsWith(`${origin}/`) ? withoutFragment(documentUrl) : `${origin}/`;
}
