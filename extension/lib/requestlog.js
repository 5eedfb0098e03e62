// The browser's recent requests. A download does not have a reference to its request, nor the posted
// data and the headers.

import { withoutFragment } from './addresses.js';
import { inChromium } from './browserdownloads.js';
import { allSentHeaders, headerValue } from './headers.js';
import { Listeners } from './listeners.js';

const maxRemembered = 1000;

/** Firefox reports a download before its request, by up to 300 ms when idle. Chromium does not. */
const requestTimeoutMs = inChromium ? 0 : 3000;

const urls = ['http://*/*', 'https://*/*'];

/** The types of requests of downloads that may be caught. */
const catchable = ['main_frame', 'sub_frame', 'other'];

/** The types of requests of downloads that stay in the browser: saved from a page, or fetched by a worker. */
const others = ['image', 'media', 'object', 'xmlhttprequest'];

const formType = 'application/x-www-form-urlencoded';

/**
 * @typedef {object} BrowserRequest a chain of redirects is one request, with the URL of its last part
 * @property {string} url without fragment
 * @property {string} type
 * @property {number} tabId -1 without a tab
 * @property {number} frameId
 * @property {string} method
 * @property {object} body
 * @property {string} origin the page or the origin that initiated it; '' if the user did
 * @property {object|null} sent the headers that matter, once they were sent
 * @property {number} status 0 until the response has arrived
 * @property {number} answered the time of the response, in milliseconds
 * @property {number} began the start of the chain
 * @property {number} timeStamp the start of its last part
 */

export class RequestLog {
    /** @type {Map<string, BrowserRequest>} by id; each is used for one download only */
    #requests = new Map();
    /** To be called when a request has changed. */
    #waiting = new Set();
    #listeners;

    constructor() {
        const filter = { urls, types: catchable };
        const { webNavigation, webRequest } = chrome;
        this.#listeners = new Listeners([
            [webRequest.onBeforeRequest, each => this.#onRequest(each), filter, ['requestBody']],
            [webRequest.onBeforeRequest, each => this.#onRequest(each), { urls, types: others }],
            [webRequest.onSendHeaders, each => this.#onSent(each), filter, allSentHeaders],
            [webRequest.onHeadersReceived, each => this.#onAnswer(each), filter],
            [webRequest.onErrorOccurred, each => this.#onError(each), filter],
            [webNavigation.onCommitted, each => this.#onShown(each)],
        ]);
    }

    /** To be switched on at once when the script starts. */
    setListening(on) {
        this.#listeners.set(on);
        if (!on)
            this.#requests.clear();
    }

    /**
     * Removes and returns the request that started a download of a URL; undefined if there is none.
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
            const timer = requestTimeoutMs && setTimeout(finish, requestTimeoutMs);
            this.#waiting.add(look);
            look();
            if (!requestTimeoutMs)
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
        if (this.#requests.size > maxRemembered)
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
        // Chromium returns bytes if it is not UTF-8; URLSearchParams would turn them into their type's name.
        return pairs.every(([, value]) => typeof value === 'string') ? new URLSearchParams(pairs).toString() : '';
    }
    if (!raw?.every(part => part.bytes))
        return '';
    const decoder = new TextDecoder();
    return raw.map(part => decoder.decode(part.bytes, { stream: true })).join('');
}
