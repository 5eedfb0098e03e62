// The observed pages by tab.

import { isWebAddress, isTooLong, withoutFragment } from './addresses.js';
import { SessionMap } from './sessionmap.js';

/** The limit of prerendered pages per tab; the oldest are dropped. */
const maxAhead = 20;

/**
 * @typedef {object} Page
 * @property {string} url without fragment; '' unless http(s)
 * @property {boolean} asked whether the user asked for this tab
 * @property {object} ahead the URLs of prerendered pages, by the ids of their frames
 */

export class Pages {
    /** Called with a tab's id when it shows another page, or is no longer observed. */
    onChanged = _tabId => {};

    #notifications;
    #byTab = new SessionMap('pages');

    constructor(notifications) { this.#notifications = notifications; }

    restore() { return this.#byTab.restore(); }

    get size() { return this.#byTab.size; }
    /** @returns {Page|undefined} */
    get(tabId) { return this.#byTab.get(tabId); }
    [Symbol.iterator]() { return this.#byTab[Symbol.iterator](); }
    /** The ids of the tabs that show a page, or have it prerendered. */
    tabsOf(url) {
        return [...this.#byTab]
            .filter(([, page]) => page.url === url || Object.values(page.ahead).includes(url))
            .map(([tabId]) => tabId);
    }

    /** Starts to observe a tab. */
    begin(tabId, address = '') {
        const url = pageUrlOf(address);
        if (this.#byTab.get(tabId)?.url)
            return;
        this.#change(tabId, { asked: false, ...this.#byTab.get(tabId), url, ahead: {} });
        if (url)
            this.#notifications.tabNavigated('', url);
    }

    ask(tabId) { this.#change(tabId, { asked: true }); }

    end(tabId) {
        const page = this.#byTab.get(tabId);
        if (page?.url)
            this.#notifications.tabClosed(page.url);
        if (this.#byTab.delete(tabId))
            this.onChanged(tabId);
    }

    /** Reports all pages to a new host. */
    announce() {
        for (const [, { url }] of this.#byTab) {
            if (url)
                this.#notifications.tabNavigated('', url);
        }
    }

    onNavigated({ tabId, frameId, url, documentLifecycle, frameType }) {
        const page = this.#byTab.get(tabId);
        const next = pageUrlOf(url);
        if (documentLifecycle === 'prerender' && frameType === 'outermost_frame') {
            const ahead = Object.entries({ ...page.ahead, [frameId]: next }).slice(-maxAhead);
            this.#change(tabId, { ahead: Object.fromEntries(ahead) });
        }
        if (frameId !== 0 || next === page.url) // a page that is loaded again is the same
            return;
        this.#notifications.tabNavigated(page.url, next);
        this.#change(tabId, { url: next, ahead: {} });
    }

    onAddressChanged({ tabId, frameId, url }) {
        const page = this.#byTab.get(tabId);
        const next = pageUrlOf(url);
        if (frameId !== 0 || next === page.url)
            return;
        this.#notifications.tabUrlChanged(page.url, next);
        this.#change(tabId, { url: next });
    }

    /** The page on which a tab makes a request. */
    urlAt({ tabId, frameId, parentFrameId, documentLifecycle }) {
        const { url, ahead } = this.#byTab.get(tabId);
        return documentLifecycle === 'prerender' ? ahead[frameId] ?? ahead[parentFrameId] ?? '' : url;
    }

    #change(tabId, members) {
        this.#byTab.set(tabId, { ...this.#byTab.get(tabId), ...members });
        this.onChanged(tabId);
    }
}

/** The page's URL without fragment; '' unless http(s). */
function pageUrlOf(address) {
    return isWebAddress(address) && !isTooLong(address) ? withoutFragment(address) : '';
}
