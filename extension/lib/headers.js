// HTTP headers: converts the browsers' lists to raw text for the host.

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
 * Further options for onSendHeaders: without "extraHeaders" Chromium hides cookies and the referrer.
 */
export const allSentHeaders
    = ['requestHeaders', chrome.webRequest.OnSendHeadersOptions?.EXTRA_HEADERS].filter(Boolean);

/** The headers that this browser would send if it made the request now. */
export async function assumedHeaders(url, documentUrl, tabId) {
    return headerBlock([
        { name: 'User-Agent', value: navigator.userAgent },
        { name: 'Referer', value: referrerFor(url, documentUrl) },
        { name: 'Cookie', value: await cookiesForLink(url, documentUrl, { id: tabId }) },
    ].filter(each => each.value));
}
