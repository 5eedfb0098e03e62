// Reports the browser's own downloads to the host, which does not treat their requests as media.

import { addressOf, isTooLong, isWebAddress, withoutFragment } from './addresses.js';
import { Listeners } from './listeners.js';

/** In milliseconds. A browser may report a request after the end of its download. */
const requestDelay = 3000;

export class DownloadReports {
    #host;
    /** URLs by download id: the browser may have removed a download from its list when it ends. */
    #urls = new Map();
    /** Timers of downloads whose end is not reported yet. */
    #ending = new Map();
    #listeners = new Listeners([
        [chrome.downloads.onCreated, item => this.#begin(item)],
        [chrome.downloads.onChanged, ({ id, state }) => this.#change(id, state?.current)],
        [chrome.downloads.onErased, id => this.#change(id, 'interrupted')],
    ]);

    constructor(host) { this.#host = host; }

    /** Starts or stops reporting. */
    setListening(on) {
        this.#listeners.set(on);
        if (on) {
            this.announce();
        } else {
            for (const id of [...this.#urls.keys()])
                this.#end(id, 'interrupted'); // as far as is known
        }
    }

    /** Reports the current state to a new host. */
    async announce() {
        for (const item of await chrome.downloads.search({ state: 'in_progress' }))
            this.#begin(item);
    }

    #begin(item) {
        const address = withoutFragment(addressOf(item)); // requests are reported without one
        if (!this.#listeners.areOn || item.state !== 'in_progress' || item.incognito
            || !isWebAddress(address) || isTooLong(address))
            return;
        clearTimeout(this.#ending.get(item.id));
        this.#ending.delete(item.id);
        this.#urls.set(item.id, address);
        this.#report(item.id, 'in_progress');
    }

    async #change(id, state) {
        if (state === 'in_progress') { // it was resumed after an interruption
            for (const item of await chrome.downloads.search({ id }))
                this.#begin(item);
        } else if (state && this.#urls.has(id) && !this.#ending.has(id)) {
            this.#ending.set(id, setTimeout(() => this.#end(id, state), requestDelay));
        }
    }

    #end(id, state) {
        this.#report(id, state);
        clearTimeout(this.#ending.get(id));
        this.#ending.delete(id);
        this.#urls.delete(id);
    }

    #report(id, state) {
        const url = this.#urls.get(id);
        this.#host.tell('browser_download_state_report', { browser_download_state_report: { url, state } });
    }
}
