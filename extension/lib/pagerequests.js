// Reports the requests of observed pages to the host.

import { isTooLong, withoutFragment } from './addresses.js';
import { headerBlock } from './headers.js';

const maxRequests = 1000;

/** The browsers' errors when a player stops reading a response early, which is normal. */
const brokenOff = new Set([
    'net::ERR_ABORTED', 'net::ERR_FAILED', 'NS_BINDING_ABORTED', 'NS_ERROR_PARSED_DATA_CACHED',
]);

export class PageRequests {
    #notifications;
    #pages;
    /** The latest requests by id: URLs, and whether they are pending. */
    #requests = new Map();
    /** URLs whose next requests are not reported. */
    #hidden = new Set();

    constructor(notifications, pages) {
        this.#notifications = notifications;
        this.#pages = pages;
    }

    /** The tab and frame of a request; undefined if it was dropped. */
    placeOf(requestId) { return this.#requests.get(requestId); }

    /** Hides the requests for a URL while an action runs that makes them. */
    async hiding(url, work) {
        this.#hidden.add(url);
        try {
            return await work();
        } finally {
            this.#hidden.delete(url);
        }
    }

    forgetAll() { this.#requests.clear(); }

    /** Also fired for cached responses, and after each redirect. */
    onRequest(details) {
        const { requestId, tabId, frameId, type, url, method, requestHeaders } = details;
        const address = withoutFragment(url);
        if (isTooLong(address) || this.#hidden.has(address))
            return;
        const request = {
            requestId,
            tabId,
            frameId,
            url: address,
            // A main frame is requested while the tab still shows the previous page.
            pageUrl: type === 'main_frame' ? address : this.#pages.urlAt(details),
            hasAnswer: false,
            isUnderWay: true,
        };
        this.#requests.delete(requestId);
        this.#requests.set(requestId, request);
        if (this.#requests.size > maxRequests)
            this.#requests.delete(this.#requests.keys().next().value);
        this.#notifications.requestEvent('request', request, {
            requestHeaders: headerBlock(requestHeaders), data: method,
        });
    }

    onRedirect({ requestId, redirectUrl }) {
        const request = this.#underWay(requestId);
        if (request && !isTooLong(redirectUrl))
            this.#notifications.requestEvent('redirect', request, { data: withoutFragment(redirectUrl) });
    }

    onResponse({ requestId, statusCode, responseHeaders = [] }) {
        const request = this.#underWay(requestId);
        if (!request)
            return;
        request.hasAnswer = true;
        const shown = responseHeaders.filter(each => !/^set-cookie2?$/i.test(each.name));
        this.#notifications.requestEvent('response', request, {
            responseHeaders: headerBlock(shown), data: String(statusCode),
        });
    }

    onCompleted({ requestId }) { this.#end(requestId, 'completed'); }

    onError({ requestId, error }) {
        const hasEnough = this.#underWay(requestId)?.hasAnswer && brokenOff.has(error);
        this.#end(requestId, hasEnough ? 'completed' : 'failed');
    }

    #end(requestId, type) {
        const request = this.#underWay(requestId);
        if (!request)
            return;
        request.isUnderWay = false;
        this.#notifications.requestEvent(type, request);
    }

    #underWay(requestId) {
        const request = this.#requests.get(requestId);
        return request?.isUnderWay ? request : undefined;
    }
}
