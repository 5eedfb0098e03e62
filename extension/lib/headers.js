// HTTP headers, as browsers give them to extensions and as the host takes them: as raw text.

import { cookiesForLink } from './cookies.js';
import { referrerFor } from './referrer.js';

/** @param {{name: string, value?: string, binaryValue?: number[]}[]} headers */
export function headerBlock(headers = []) {
    return headers.map(({ name, value, binaryValue }) =>
        `${name}: ${value ?? String.fromCharCode(...binaryValue ?? [])}\r\n`).join('');
}

/** The value of the first header of a name in lower case; '' when there is none. */
export function headerValue(headers = [], name) {
    return headers.find(each => each.name.toLowerCase() === name)?.value ?? '';
}

/**
 * What to ask for besides onSendHeaders: Chromium shows the headers on cookies and the referrer only
 * to who asks for these, too.
 */
export const allSentHeaders
    = ['requestHeaders', chrome.webRequest.OnSendHeadersOptions?.EXTRA_HEADERS].filter(Boolean);

/** What this browser would send for something on a tab's page, had it asked the server just now. */
export async function assumedHeaders(url, documentUrl, tabId) {
    return headerBlock([
        { name: 'User-Agent', value: navigator.userAgent },
        { name: 'Referer', value: referrerFor(url, documentUrl) },
        { name: 'Cookie', value: await cookiesForLink(url, documentUrl, { id: tabId }) },
    ].filter(each => each.value));
}
