// Decides which tabs are observed for media: all while the option for it is on, else those for which the
// user asked. Private tabs only if the user asked.

import { isWebAddress } from './addresses.js';
import { allSentHeaders } from './headers.js';
import { Listeners } from './listeners.js';
import { SerialQueue } from './serialqueue.js';

/** The types of requests that may fetch media. */
const filter = {
    urls: ['http://*/*', 'https://*/*'],
    types: ['main_frame', 'sub_frame', 'xmlhttprequest', 'media', 'object', 'other'],
};

export class Observer {
    #notifications;
    #pages;
    #requests;
    #media;
    #downloads;
    #everywhere = false;
    /** The ids of private tabs. */
    #private = new Set();
    /** Events are handled in order, though handling some of them is asynchronous. */
    #queue = new SerialQueue();
    #listeners;

    /** @param {import('./downloadreports.js').DownloadReports} downloads their requests are not media */
    constructor(notifications, pages, requests, media, downloads) {
        this.#notifications = notifications;
        this.#pages = pages;
        this.#requests = requests;
        this.#media = media;
        this.#downloads = downloads;
        const { webRequest, webNavigation, tabs } = chrome;
        const events = [
            [webRequest.onSendHeaders, details => requests.onRequest(details), filter, allSentHeaders],
            [webRequest.onBeforeRedirect, details => requests.onRedirect(details), filter],
            [webRequest.onResponseStarted, details => requests.onResponse(details), filter, ['responseHeaders']],
            [webRequest.onCompleted, details => requests.onCompleted(details), filter],
            [webRequest.onErrorOccurred, details => requests.onError(details), filter],
            [webNavigation.onCommitted, details => pages.onNavigated(details)],
            [webNavigation.onHistoryStateUpdated, details => pages.onAddressChanged(details)],
        ].map(([event, handle, ...more]) => [event, details => this.#inOrder(async () => {
            if (await this.#isObserved(details.tabId))
                handle(details);
        }), ...more]);
        this.#listeners = new Listeners([...events, [tabs.onRemoved, tabId => this.#inOrder(() => this.#onTabRemoved(tabId))]]);
    }

    /** To be called synchronously at the start: the browser may have started the script for an event. */
    listen() {
        this.#setListening(true);
        this.#inOrder(async () => {
            await Promise.all([this.#pages.restore(), this.#media.restore()]);
            this.#listenIfNeeded();
        });
    }

    /** Starts or stops observing the tabs for which the user did not ask. */
    observeEverywhere(on) {
        return this.#inOrder(async () => {
            if (on === this.#everywhere)
                return;
            this.#everywhere = on;
            this.#listenIfNeeded();
            if (on) {
                for (const { id, url, incognito } of await chrome.tabs.query({})) {
                    if (!incognito)
                        this.#pages.begin(id, url);
                }
            } else {
                for (const [tabId, page] of [...this.#pages]) {
                    if (!page.asked)
                        this.#pages.end(tabId);
                }
                this.#listenIfNeeded();
            }
        });
    }

    /** Observes a tab for which the user asked. Resolves once it is observed, if it shows a web page. */
    observe(tabId) {
        return this.#inOrder(async () => {
            const { url } = await chrome.tabs.get(tabId);
            if (!isWebAddress(url))
                return;
            this.#pages.begin(tabId, url);
            this.#pages.ask(tabId);
            this.#listenIfNeeded();
        });
    }

    /** Reports everything to a new host. */
    announce() {
        return this.#inOrder(() => {
            this.#notifications.wantMedia();
            this.#pages.announce();
            this.#media.announce();
            if (this.#listeners.areOn)
                this.#downloads.announce();
        });
    }

    #inOrder(work) {
        const mine = this.#queue.run(work);
        mine.catch(error => console.error(error));
        return mine;
    }

    #listenIfNeeded() { this.#setListening(this.#everywhere || this.#pages.size > 0); }

    #setListening(on) {
        if (!this.#listeners.set(on))
            return;
        this.#downloads.setListening(on);
        if (!on)
            this.#requests.forgetAll();
    }

    async #isObserved(tabId) {
        if (this.#pages.get(tabId))
            return true;
        if (!this.#everywhere || tabId < 0 || this.#private.has(tabId))
            return false;
        const tab = await chrome.tabs.get(tabId).catch(() => null);
        if (tab?.incognito)
            this.#private.add(tabId);
        else if (tab)
            this.#pages.begin(tabId);
        return tab?.incognito === false;
    }

    #onTabRemoved(tabId) {
        this.#private.delete(tabId);
        this.#pages.end(tabId);
        this.#listenIfNeeded();
    }
}
