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

/** Those with which one begins that is left: what is saved from a page, what a worker fetched. */
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
    /** To be called when more is known. */
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

    /** Forgets a request. Returns it with all that was sent for it. */
    #remove(request) {
        this.#requests.delete(request.id);
        const { url, tabId, sent } = request;
        if (!sent || sent.cookie || sent.referer)
            return request;
        // What was fetched ahead is not asked for again when the user goes there.
        const ahead = this.#newest(url, each => each.tabId === tabId && each.sent?.purpose);
        if (!ahead)
            return request;
        this.#requests.delete(ahead.id);
        return { ...request, sent: { ...ahead.sent, purpose: sent.purpose } };
    }

    #onRequest({ requestId, url, type, tabId, frameId, method, requestBody, originUrl, initiator, timeStamp }) {
        const before = this.#requests.get(requestId); // a redirection comes under the same id
        this.#requests.delete(requestId);
        this.#requests.set(requestId, {
            id: requestId,
            url: withoutFragment(url),
            type,
            tabId,
            frameId,
            method,
            body: requestBody,
            // A browser tells one of the two.
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
            request.body = null; // it is not posted again, and may be large
    }

    #onAnswer({ requestId, statusCode, timeStamp }) {
        const request = this.#requests.get(requestId);
        if (!request)
            return;
        request.status = statusCode;
        request.answered = timeStamp;
        this.#nowKnown();
    }

    /** A download that takes a request over ends it, but after its answer has begun. */
    #onError({ requestId }) {
        if (this.#requests.get(requestId)?.status === 0)
            this.#requests.delete(requestId);
    }

    /** The answer is a page, which must not be asked for again when the user saves it. */
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
 * What a request posted, as the text that goes over the wire; '' for a request without a body.
 * null when the application could not repeat it: it posts forms, and nothing else.
 */
export function postedText({ method, body, sent }) {
    if (method === 'GET')
        return '';
    if (method !== 'POST' || !body || body.error || !sent?.contentType.startsWith(formType))
        return null;
    // Nothing posted is no GET, but the application would make one of it.
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
