// Tells the host what pages request, for it to find the videos on them: everywhere while videos are
// looked for, else in the tabs for which the user asked.

import { isWebAddress, withoutFragment } from './addresses.js';
import { headerBlock } from './headers.js';
import { addressesIn, mediaIn } from './mediarules.js';
import { playlistText } from './playlists.js';

/** What may fetch media. */
const filter = {
    urls: ['http://*/*', 'https://*/*'],
    types: ['main_frame', 'sub_frame', 'xmlhttprequest', 'media', 'object', 'other'],
};
const mostRequests = 1000;

/** How the browsers call it when a player has enough of an answer, which says nothing against it. */
const brokenOff = new Set([
    'net::ERR_ABORTED', 'net::ERR_FAILED', 'NS_BINDING_ABORTED', 'NS_ERROR_PARSED_DATA_CACHED',
]);

/** Chromium shows the headers on cookies and the referrer only to who asks for these, too. */
const allHeaders = ['requestHeaders', chrome.webRequest.OnSendHeadersOptions?.EXTRA_HEADERS].filter(Boolean);

export class Observer {
    #host;
    #pages;
    #downloads;
    #everywhere = false;
    #listening = false;
    /** Those under way, by their ids. */
    #requests = new Map();
    /** Addresses of playlists that are just read for their text. */
    #reading = new Set();
    /** What the browser tells is worked through in its order, though some of it takes time. */
    #last = Promise.resolve();

    #events = [
        // This comes for what the browser has in its cache, too, and after each redirect.
        [chrome.webRequest.onSendHeaders, details => this.#onRequest(details), allHeaders],
        [chrome.webRequest.onBeforeRedirect, details => this.#onRedirect(details)],
        [chrome.webRequest.onResponseStarted, details => this.#onResponse(details), ['responseHeaders']],
        [chrome.webRequest.onCompleted, details => this.#onCompleted(details)],
        [chrome.webRequest.onErrorOccurred, details => this.#onError(details)],
    ].map(([event, handle, ...more]) => [event, details => void this.#inOrder(() => handle(details)), ...more]);

    /** @param {import('./downloadreports.js').DownloadReports} downloads whose requests are no media */
    constructor(host, pages, downloads) {
        this.#host = host;
        this.#pages = pages;
        this.#downloads = downloads;
    }

    /** To be called at once when the script starts. */
    listen() {
        this.#setListening(true);
        chrome.webNavigation.onCommitted.addListener(
            details => void this.#inOrder(() => this.#onNavigated(details)));
        chrome.webNavigation.onHistoryStateUpdated.addListener(
            details => void this.#inOrder(() => this.#onAddressChanged(details)));
        chrome.tabs.onRemoved.addListener(tabId => void this.#inOrder(() => this.#end(tabId)));
        this.#inOrder(async () => {
            await this.#pages.restore();
            this.#setListening(this.#pages.size > 0);
        });
    }

    /** Begins or ends observing the tabs for which the user did not ask. */
    observeEverywhere(on) {
        return this.#inOrder(async () => {
            if (on === this.#everywhere)
                return;
            this.#everywhere = on;
            if (on) {
                for (const { id, url } of await chrome.tabs.query({}))
                    this.#begin(id, url);
            } else {
                for (const [tabId, page] of [...this.#pages]) {
                    if (!page.asked)
                        this.#end(tabId);
                }
            }
            this.#setListening(on || this.#pages.size > 0);
        });
    }

    /** The user asked for a tab. Resolves with its page, undefined when that is none of the web. */
    observe(tabId) {
        return this.#inOrder(async () => {
            const { url } = await chrome.tabs.get(tabId);
            if (!isWebAddress(url))
                return undefined;
            this.#begin(tabId, url);
            this.#setListening(true);
            return this.#pages.change(tabId, { asked: true });
        });
    }

    /** A host that was just started knows nothing. */
    announce() {
        return this.#inOrder(() => {
            for (const [, page] of this.#pages)
                this.#notify('tab_navigated', { data: page.url });
        });
    }

    /** The browser downloads something, which is no media of a page then. */
    forget(url) {
        return this.#inOrder(() => {
            for (const [tabId] of this.#pages)
                this.#pages.dropMedia(tabId, each => each.url === url);
        });
    }

    #inOrder(work) {
        const mine = this.#last.then(work);
        this.#last = mine.catch(error => console.error(error));
        return mine;
    }

    #setListening(on) {
        if (on === this.#listening)
            return;
        this.#listening = on;
        for (const [event, listener, ...more] of this.#events) {
            if (on)
                event.addListener(listener, filter, ...more);
            else
                event.removeListener(listener);
        }
        if (!on)
            this.#requests.clear();
    }

    // --- tabs ---

    #begin(tabId, address) {
        if (this.#pages.get(tabId)?.url)
            return;
        const page = this.#pages.add(tabId, pageUrlOf(address));
        if (page.url)
            this.#notify('tab_navigated', { data: page.url });
    }

    #end(tabId) {
        const page = this.#pages.get(tabId);
        if (!page)
            return;
        if (page.url)
            this.#notify('tab_closed', { srcTabUrl: page.url });
        this.#pages.remove(tabId);
        this.#setListening(this.#everywhere || this.#pages.size > 0);
    }

    /** The page of a tab, undefined when that is not observed. */
    #pageIn(tabId) {
        const page = this.#pages.get(tabId);
        return page ?? (this.#everywhere && tabId >= 0 ? this.#pages.add(tabId) : undefined);
    }

    #onNavigated({ tabId, frameId, url, documentLifecycle, frameType }) {
        const page = this.#pageIn(tabId);
        const next = pageUrlOf(url);
        if (page && documentLifecycle === 'prerender' && frameType === 'outermost_frame')
            this.#pages.change(tabId, { ahead: { ...page.ahead, [frameId]: next } });
        if (!page || frameId !== 0 || next === page.url) // a page that is loaded again is the same
            return;
        this.#notify('tab_navigated', { srcTabUrl: page.url, data: next });
        // Something was found before on what was rendered ahead, and on what has a tab of its own.
        const { playlists, named } = Object.values(page.ahead).includes(next) ? page : { playlists: [], named: [] };
        const media = page.media.filter(each => each.pageUrl === next);
        this.#pages.change(tabId, { url: next, ahead: {}, media, playlists, named });
    }

    #onAddressChanged({ tabId, frameId, url }) {
        const page = frameId === 0 && this.#pageIn(tabId);
        const next = pageUrlOf(url);
        if (!page || next === page.url)
            return;
        this.#notify('tab_url_changed', { srcTabUrl: page.url, data: next });
        const underWay = [...this.#requests.values()].filter(each => each.tabId === tabId);
        for (const each of [...page.media, ...underWay]) {
            if (each.pageUrl === page.url)
                each.pageUrl = next;
        }
        this.#pages.change(tabId, { url: next });
    }

    // --- requests ---

    #onRequest(details) {
        const { requestId, tabId, frameId, type, url, method, requestHeaders } = details;
        const page = this.#pageIn(tabId);
        const address = withoutFragment(url);
        if (!page || this.#reading.has(address))
            return;
        const request = {
            requestId,
            tabId,
            frameId,
            url: address,
            method,
            // What is opened in a tab of its own is requested while that shows another page.
            pageUrl: type === 'main_frame' ? address : pageUrlAt(page, details),
            requestHeaders: headerBlock(requestHeaders),
        };
        this.#requests.delete(requestId);
        this.#requests.set(requestId, request);
        if (this.#requests.size > mostRequests)
            this.#requests.delete(this.#requests.keys().next().value);
        this.#notifyOf('request', request);
    }

    #onRedirect({ requestId, redirectUrl }) {
        const request = this.#requests.get(requestId);
        if (request)
            this.#notifyOf('redirect', request, { data: withoutFragment(redirectUrl) });
    }

    #onResponse(details) {
        const request = this.#requests.get(details.requestId);
        if (!request)
            return;
        const shown = details.responseHeaders?.filter(each => !/^set-cookie2?$/i.test(each.name));
        request.statusCode = details.statusCode;
        request.responseHeaders = headerBlock(shown);
        this.#notifyOf('response', request);
        const media = mediaIn(details);
        const page = this.#pages.get(request.tabId);
        if (!media || !page || this.#downloads.isUnderWay(request.url))
            return;
        request.isUnread = media.kind === 'stream' && !page.playlists.includes(request.url);
        this.#pages.addMedia(request.tabId, { ...request, ...media });
    }

    #onCompleted({ requestId }) {
        const request = this.#requests.get(requestId);
        if (!request)
            return;
        this.#requests.delete(requestId);
        this.#notifyOf('completed', request);
        if (request.isUnread)
            this.#readPlaylist(request);
    }

    #onError({ requestId, error }) {
        const request = this.#requests.get(requestId);
        if (!request)
            return;
        this.#requests.delete(requestId);
        if (request.statusCode && brokenOff.has(error)) {
            this.#notifyOf('completed', request);
            return;
        }
        this.#notifyOf('failed', request);
        this.#pages.dropMedia(request.tabId, each => each.requestId === requestId);
    }

    async #readPlaylist(request) {
        this.#reading.add(request.url);
        const text = await playlistText(request);
        await this.#inOrder(() => {
            this.#reading.delete(request.url);
            if (!text.startsWith('#EXTM3U')) // what DASH has lies beside or below
                return;
            this.#pages.addNamed(request.tabId, addressesIn(text, request.url));
            this.#notifyOf('playlist', request, { data: text });
        });
    }

    // --- what the host is told ---

    #notify(type, members) {
        this.#host.tell('network_request_notification', {
            network_request_notification: { type, ...members },
        });
    }

    /** @param {object} changes members that differ from what the request says of itself */
    #notifyOf(type, { requestId, url, pageUrl, method, requestHeaders, statusCode, responseHeaders }, changes) {
        const members = {
            request: { requestHeaders, data: method },
            response: { responseHeaders, data: String(statusCode) },
        };
        this.#notify(type, { requestId, url, srcTabUrl: pageUrl, ...members[type], ...changes });
    }
}

/** The page of a tab on which a request is made. */
function pageUrlAt(page, { frameId, parentFrameId, documentLifecycle }) {
    return documentLifecycle === 'prerender'
        ? page.ahead[frameId] ?? page.ahead[parentFrameId] ?? ''
        : page.url;
}

/** How a page is called; '' for one that is none of the web. */
function pageUrlOf(address) { return isWebAddress(address) ? withoutFragment(address) : ''; }
