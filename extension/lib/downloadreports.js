// Tells the host what the browser downloads by itself, whose requests are no video on a page.

import { addressOf, isWebAddress } from './addresses.js';

export class DownloadReports {
    #host;
    /** Addresses by the downloads' ids: when one ends the browser may have forgotten it. */
    #urls = new Map();

    constructor(host) { this.#host = host; }

    /** To be called at once when the script starts. */
    listen() {
        chrome.downloads.onCreated.addListener(item => this.#onBegun(item));
        chrome.downloads.onChanged.addListener(({ id, state }) => this.#report(id, state?.current));
        chrome.downloads.onErased.addListener(id => {
            this.#report(id, 'interrupted');
            this.#urls.delete(id);
        });
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
    }

    #report(id, state) {
        const url = this.#urls.get(id);
        if (!url || !state)
            return;
        this.#host.tell('browser_download_state_report', { browser_download_state_report: { url, state } });
        if (state === 'complete')
            this.#urls.delete(id);
    }
}
