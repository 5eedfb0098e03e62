// Tells the host what the browser downloads by itself, whose requests are no video on a page.

import { addressOf, isWebAddress } from './addresses.js';

export class DownloadReports {
    /** Called with the address of what the browser begins to download. */
    onBegun = _url => {};

    #host;
    /** Addresses by the downloads' ids: when one ends the browser may have forgotten it. */
    #urls = new Map();

    constructor(host) { this.#host = host; }

    /** To be called at once when the script starts. */
    listen() {
        chrome.downloads.onCreated.addListener(item => this.#onBegun(item));
        chrome.downloads.onChanged.addListener(change => this.#onChanged(change));
        chrome.downloads.onErased.addListener(id => this.#report(id, 'interrupted'));
    }

    /** A host that was just started knows nothing. */
    async announce() {
        for (const item of await chrome.downloads.search({ state: 'in_progress' }))
            this.#onBegun(item);
    }

    #onBegun(item) {
        if (item.state !== 'in_progress' || !isWebAddress(addressOf(item)))
            return;
        this.#urls.set(item.id, addressOf(item));
        this.#report(item.id, 'in_progress');
        this.onBegun(addressOf(item));
    }

    isUnderWay(url) { return [...this.#urls.values()].includes(url); }

    async #onChanged({ id, state }) {
        if (state?.current !== 'in_progress') {
            this.#report(id, state?.current);
            return;
        }
        for (const item of await chrome.downloads.search({ id })) // it goes on after an interruption
            this.#onBegun(item);
    }

    #report(id, state) {
        const url = this.#urls.get(id);
        if (!url || !state)
            return;
        this.#host.tell('browser_download_state_report', { browser_download_state_report: { url, state } });
        if (state !== 'in_progress')
            this.#urls.delete(id);
    }
}
