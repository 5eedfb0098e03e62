// Tells the host what the browser downloads by itself, whose requests are no video on a page.

import { addressOf, isWebAddress, withoutFragment } from './addresses.js';

/** A browser may tell of a request only after it has told that the download has ended. */
const requestDelay = 3000;

export class DownloadReports {
    /** Called with the address of what the browser begins to download. */
    onBegun = _url => {};

    #host;
    /** Addresses by the downloads' ids: when one ends the browser may have forgotten it. */
    #urls = new Map();
    /** Timers of those that have ended and are not reported yet. */
    #ending = new Map();

    constructor(host) { this.#host = host; }

    /** To be called at once when the script starts. */
    listen() {
        chrome.downloads.onCreated.addListener(item => this.#begin(item));
        chrome.downloads.onChanged.addListener(({ id, state }) => this.#change(id, state?.current));
        chrome.downloads.onErased.addListener(id => this.#change(id, 'interrupted'));
    }

    /** A host that was just started knows nothing. */
    async announce() {
        for (const item of await chrome.downloads.search({ state: 'in_progress' }))
            this.#begin(item);
    }

    isUnderWay(url) { return [...this.#urls.values()].includes(url); }

    #begin(item) {
        const address = withoutFragment(addressOf(item)); // requests are told of without one
        if (item.state !== 'in_progress' || !isWebAddress(address))
            return;
        clearTimeout(this.#ending.get(item.id));
        this.#ending.delete(item.id);
        this.#urls.set(item.id, address);
        this.#report(item.id, 'in_progress');
        this.onBegun(address);
    }

    async #change(id, state) {
        if (state === 'in_progress') { // it goes on after an interruption
            for (const item of await chrome.downloads.search({ id }))
                this.#begin(item);
        } else if (state && this.#urls.has(id) && !this.#ending.has(id)) {
            this.#ending.set(id, setTimeout(() => {
                this.#report(id, state);
                this.#ending.delete(id);
                this.#urls.delete(id);
            }, requestDelay));
        }
    }

    #report(id, state) {
        const url = this.#urls.get(id);
        this.#host.tell('browser_download_state_report', { browser_download_state_report: { url, state } });
    }
}
