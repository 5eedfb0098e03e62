// What the browser asked the servers lately. A download does not say which request it began with,
// what that posted, or what was sent along.

import { withoutFragment } from './addresses.js';
import { inChromium } from './browserdownloads.js';
import { allSentHeaders, headerValue } from './headers.js';

const mostRemembered = 1000;

/** Only Firefox tells of a download before it tells of the request, by up to 300 ms when idle. */
const requestPatience = inChromium ? 0 : 3000;

const urls = ['http://*/*', 'https://*/*'];

/** The kinds of requests with which a download begins that may be caught. */
const catchable = ['main_frame', 'sub_frame', 'other'];

/** The types of requests of downloads that stay in the browser: saved from a page, or fetched by a worker. */
const others = ['image', 'media', 'object', 'xmlhttprequest'];

const formType = 'application/x-www-form-urlencoded';

/**
 * @typedef {object} BrowserRequest a chain of redirections is one request, known by its last part
 * @property {string} url without fragment
 * @property {string} type
 * @property {number} tabId -1 for what belongs to no tab
 * @property {number} frameId
 * @property {string} method
 * @property {object} body
 * @property {string} origin the page or the origin that asked for it; '' when the user did
 * @property {object|null} sent the headers that matter, once they were sent
 * @property {number} status 0 until the answer has come
 * @property {number} answered when the answer came, in milliseconds
 * @property {number} began when the chain did
 * @property {number} timeStamp when its last part did
 */

export class RequestLog {
    /** @type {Map<string, BrowserRequest>} by id; each is used for one download only */
    #requests = new Map();
    /** To be called when a request has changed. */
    #waiting = new Set();

    /** To be called at once when the script starts. */
    listen() {
        const filter = { urls, types: catchable };
        const { webRequest } = chrome;
        webRequest.onBeforeRequest.addListener(each => this.#onRequest(each), filter, ['requestBody']);
        webRequest.onBeforeRequest.addListener(each => this.#onRequest(each), { urls, types: others });
        webRequest.onSendHeaders.addListener(each => this.#onSent(each), filter, allSentHeaders);
        webRequest.onHeadersReceived.addListener(each => this.#onAnswer(each), filter);
        webRequest.onErrorOccurred.addListener(each => this.#onError(each), filter);
        chrome.webNavigation.onCommitted.addListener(each => this.#onShown(each));
    }

    /**
     * The request that a download of an address began with; undefined when there is none. It is
     * forgotten here.
     * @returns {Promise<BrowserRequest|undefined>}
     */
    take(url) {
        const wanted = withoutFragment(url);
        return new Promise(resolve => {
            const look = () => {
                const request = this.#newest(wanted);
                if (request && (request.status || !catchable.includes(request.type)))
                    finish(request);
            };
            const finish = request => {
                clearTimeout(timer);
                this.#waiting.delete(look);
                resolve(request && this.#remove(request));
            };
            const timer = requestPatience && setTimeout(finish, requestPatience);
            this.#waiting.add(look);
            look();
            if (!requestPatience)
                finish();
        });
    }

    #newest(url, isWanted = () => true) {
        return [...this.#requests.values()].filter(each => each.url === url && isWanted(each))
            .reduce((best, each) => (best?.timeStamp > each.timeStamp ? best : each), undefined);
    }

    /** Removes a request. Returns it with the headers that were sent. */
    #remove(request) {
        this.#requests.delete(request.id);
        const { url, tabId, sent } = request;
        if (!sent || sent.cookie || sent.referer)
            return request;
        // A prefetched response is not requested again when the user navigates there.
        const ahead = this.#newest(url, each => each.tabId === tabId && each.sent?.purpose);
        if (!ahead)
            return request;
        this.#requests.delete(ahead.id);
        return { ...request, sent: { ...ahead.sent, purpose: sent.purpose } };
    }

    #onRequest({ requestId, url, type, tabId, frameId, method, requestBody, originUrl, initiator, timeStamp }) {
        const before = this.#requests.get(requestId); // a redirect has the same id
        this.#requests.delete(requestId);
        this.#requests.set(requestId, {
            id: requestId,
            url: withoutFragment(url),
            type,
            tabId,
            frameId,
            method,
            body: requestBody,
            // Browsers report one of the two.
            origin: originUrl ?? initiator ?? '',
            sent: null,
            status: 0,
            answered: 0,
            began: before?.began ?? timeStamp,
            timeStamp,
        });
        if (this.#requests.size > mostRemembered)
            this.#requests.delete(this.#requests.keys().next().value);
        this.#nowKnown();
    }

    #onSent({ requestId, requestHeaders }) {
        const request = this.#requests.get(requestId);
        if (!request)
            return;
        const value = name => headerValue(requestHeaders, name);
        request.sent = {
            cookie: value('cookie'),
            referer: value('referer'),
            userAgent: value('user-agent'),
            authorization: value('authorization'),
            purpose: value('sec-purpose'),
            contentType: value('content-type').toLowerCase(),
        };
        if (!request.sent.contentType.startsWith(formType))
            request.body = null; // a redirect does not post it again, and it may be large
    }

    #onAnswer({ requestId, statusCode, timeStamp }) {
        const request = this.#requests.get(requestId);
        if (!request)
            return;
        request.status = statusCode;
        request.answered = timeStamp;
        this.#nowKnown();
    }

    /** A request that becomes a download ends with an error, but after its response headers. */
    #onError({ requestId }) {
        if (this.#requests.get(requestId)?.status === 0)
            this.#requests.delete(requestId);
    }

    /** The response is a page, which must not be requested again when the user saves it. */
    #onShown({ tabId, frameId, url }) {
        const shown = withoutFragment(url);
        for (const each of [...this.#requests.values()]) {
            if (each.tabId === tabId && each.frameId === frameId && each.url === shown)
                this.#requests.delete(each.id);
        }
    }

    #nowKnown() {
        for (const look of [...this.#waiting])
            look();
    }
}

/**
 * The posted body as text; '' for a request without one. null for bodies that the application cannot
 * repeat: it posts URL-encoded forms only.
 */
export function postedText({ method, body, sent }) {
    if (method === 'GET')
        return '';
    if (method !== 'POST' || !body || body.error || !sent?.contentType.startsWith(formType))
        return null;
    // The application would turn a POST with an empty body into a GET.
    return textOf(body) || null;
}

function textOf({ formData, raw }) {
    if (formData) {
        const pairs = Object.entries(formData)
            .flatMap(([name, values]) => values.map(value => [name, value]));
        // Chromium gives bytes for what is no UTF-8, and URLSearchParams would name their type.
        return pairs.every(([, value]) => typeof value === 'string') ? new URLSearchParams(pairs).toString() : '';
    }
    if (!raw?.every(part => part.bytes))
        return '';
    const decoder = new TextDecoder();
    return raw.map(part => decoder.decode(part.bytes, { stream: true })).join('');
}
