// What the browser asked the servers lately: a download says neither that it was a POST nor what
// was posted, and not every browser says which page it came from.

import { withoutFragment } from './addresses.js';
import { headerValue } from './headers.js';

const remembered = 500;

/** A busy browser may tell of a download before it tells of the request. */
const requestPatience = 3000;

const formType = 'application/x-www-form-urlencoded';

export class RequestLog {
    /** Requests by id, the latest last. */
    #requests = new Map();
    /** To be called when more is known. */
    #waiting = new Set();

    /** To be called at once when the script starts. */
    listen() {
        const filter = { urls: ['http://*/*', 'https://*/*'], types: ['main_frame', 'sub_frame', 'other'] };
        chrome.webRequest.onBeforeRequest.addListener(
            details => this.#onRequest(details), filter, ['requestBody']);
        chrome.webRequest.onSendHeaders.addListener(
            details => this.#onHeaders(details), filter, ['requestHeaders']);
    }

    /**
     * Resolves with the latest request for an address as soon as all of it is known; with undefined
     * when that takes too long.
     */
    find(url) {
        const wanted = withoutFragment(url);
        return new Promise(resolve => {
            const look = () => {
                const request = [...this.#requests.values()].reverse().find(each => each.url === wanted);
                if (request && (request.method === 'GET' || request.isSent))
                    finish(request);
            };
            const finish = request => {
                clearTimeout(timer);
                this.#waiting.delete(look);
                resolve(request);
            };
            const timer = setTimeout(finish, requestPatience);
            this.#waiting.add(look);
            look();
        });
    }

    #nowKnown() {
        for (const look of [...this.#waiting])
            look();
    }

    #onRequest(details) {
        this.#requests.delete(details.requestId); // a redirection comes under the same id
        this.#requests.set(details.requestId, {
            url: withoutFragment(details.url),
            method: details.method,
            body: details.requestBody,
            isSent: false,
            contentType: '',
            // The page that was left for the download; a browser tells one of the two.
            documentUrl: details.originUrl ?? details.initiator ?? '',
        });
        if (this.#requests.size > remembered)
            this.#requests.delete(this.#requests.keys().next().value);
        this.#nowKnown();
    }

    #onHeaders(details) {
        const request = this.#requests.get(details.requestId);
        if (!request)
            return;
        request.isSent = true;
        request.contentType = headerValue(details.requestHeaders, 'content-type').toLowerCase();
        if (!request.contentType.startsWith(formType))
            request.body = null; // it is not posted again, and may be large
        this.#nowKnown();
    }
}

/**
 * What a request posted, as the text that goes over the wire; '' for a request without a body.
 * null when the application could not repeat it: it posts forms, and nothing else.
 */
export function postedText({ method, body, contentType }) {
    if (method === 'GET')
        return '';
    if (method !== 'POST' || !body || body.error || !contentType.startsWith(formType))
        return null;
    // Nothing posted is no GET, but the application would make one of it.
    return textOf(body) || null;
}

function textOf({ formData, raw }) {
    if (formData) {
        const pairs = Object.entries(formData)
            .flatMap(([name, values]) => values.map(value => [name, value]));
        return new URLSearchParams(pairs).toString();
    }
    if (!raw?.every(part => part.bytes))
        return '';
    const decoder = new TextDecoder();
    return raw.map(part => decoder.decode(part.bytes, { stream: true })).join('');
}
