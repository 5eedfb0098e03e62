// The pages that are observed, by their tabs, and the media that was found on each. A script that is
// started anew finds them again.

import { isPiece } from './mediarules.js';

const mostMedia = 50;
const mostPlaylists = 100;
const mostNamed = 5000;
const kept = 'pages';
const saveDelay = 200;

/**
 * @typedef {object} Page
 * @property {string} url without fragment; '' when it is none of the web
 * @property {boolean} asked whether the user asked for this tab
 * @property {object} ahead the addresses of pages that the browser renders before the user goes
 *     there, by the ids of their frames
 * @property {object[]} media the latest last: what mediaIn() tells, and the request
 * @property {string[]} playlists the addresses of all playlists, those of pieces among them
 * @property {string[]} named the addresses that the playlists name
 */

export class Pages {
    /** Called with a tab's id when its page or what was found there changed. */
    onChanged = _tabId => {};

    #byTab = new Map();
    #saving = false;

    async restore() {
        const stored = await chrome.storage.session.get(kept);
        this.#byTab = new Map(stored[kept]);
    }

    get size() { return this.#byTab.size; }
    /** @returns {Page|undefined} */
    get(tabId) { return this.#byTab.get(tabId); }
    [Symbol.iterator]() { return this.#byTab[Symbol.iterator](); }

    add(tabId, url = '') {
        this.#byTab.set(tabId, { url, asked: false, ahead: {}, media: [], playlists: [], named: [] });
        return this.change(tabId, {});
    }

    change(tabId, members) {
        const page = Object.assign(this.#byTab.get(tabId), members);
        this.#changed(tabId);
        return page;
    }

    /** The media of the page that a tab shows, undefined when that is not observed. */
    mediaOn(tabId) {
        const page = this.#byTab.get(tabId);
        return page?.media.filter(media => media.pageUrl === page.url);
    }

    remove(tabId) {
        this.#byTab.delete(tabId);
        this.#changed(tabId);
    }

    /** The parts of one resource are one. */
    addMedia(tabId, media) {
        const page = this.#byTab.get(tabId);
        const known = page.media.find(each => each.url === media.url);
        const whole = { ...media, size: Math.max(media.size, known?.size ?? -1) };
        this.#keep(tabId, [...page.media.filter(each => each !== known), whole], {
            playlists: media.kind === 'stream' ? [media.url] : [],
        });
    }

    /** A playlist was read. */
    addNamed(tabId, addresses) {
        if (this.#byTab.has(tabId))
            this.#keep(tabId, this.#byTab.get(tabId).media, { named: addresses });
    }

    /** Forgets the media that do not fit. */
    dropMedia(tabId, isUnfit) {
        const media = this.#byTab.get(tabId)?.media ?? [];
        if (media.some(isUnfit))
            this.change(tabId, { media: media.filter(each => !isUnfit(each)) });
    }

    #keep(tabId, media, { playlists = [], named = [] }) {
        const page = this.#byTab.get(tabId);
        page.playlists = [...new Set([...page.playlists, ...playlists])].slice(-mostPlaylists);
        page.named = [...new Set([...page.named, ...named])].slice(-mostNamed);
        const whole = media.filter(each => !isPiece(each, page));
        if (whole.length > mostMedia)
            whole.splice(Math.max(whole.findIndex(each => each.kind !== 'stream'), 0), 1);
        this.change(tabId, { media: whole });
    }

    #changed(tabId) {
        this.onChanged(tabId);
        if (this.#saving)
            return;
        this.#saving = true;
        setTimeout(() => {
            this.#saving = false;
            // Where there is no room for it, a script that is started anew has to look again.
            chrome.storage.session.set({ [kept]: [...this.#byTab] }).catch(() => {});
        }, saveDelay);
    }
}
