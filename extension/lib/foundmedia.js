// The media that the host found on the observed pages, for the popup, and for the next host, which may
// be started while a page is still playing.

import { playlistText } from './playlists.js';
import { SessionMap } from './sessionmap.js';

export class FoundMedia {
    #notifications;
    #pages;
    #requests;
    /** The host's lists by page URL, best first. */
    #byPage = new SessionMap('media');
    /** The ids of requests whose playlists are being read. */
    #reading = new Set();

    constructor(notifications, pages, requests) {
        this.#notifications = notifications;
        this.#pages = pages;
        this.#requests = requests;
    }

    restore() { return this.#byPage.restore(); }

    /** The media of a tab's page, best first; undefined when the page is not observed. */
    on(tabId) {
        const page = this.#pages.get(tabId);
        return page && (this.#byPage.get(page.url) ?? []).filter(each => !each.part);
    }

    /** Takes the host's list of a page. */
    accept({ page, media = [] }) {
        if (media.length === 0)
            this.#byPage.delete(page);
        else
            this.#byPage.set(page, media.map(each => this.#placed(page, each)));
        for (const tabId of this.#pages.tabsOf(page))
            this.#pages.onChanged(tabId);
        for (const each of media.filter(one => one.unread && !this.#reading.has(one.requestId)))
            this.#read(page, each);
    }

    /** Reports all lists to a new host. */
    announce() {
        for (const [page, media] of [...this.#byPage]) {
            if (this.#pages.tabsOf(page).length === 0) // it was left while there was no host
                this.#byPage.delete(page);
            else
                media.forEach(each => this.#notifications.knownMedia(page, each));
        }
    }

    /** Adds the frame that requested it, which the host does not know. */
    #placed(page, media) {
        const known = this.#byPage.get(page)?.find(each => each.requestId === media.requestId);
        const { tabId, frameId } = this.#requests.placeOf(media.requestId) ?? known ?? {};
        return { ...media, tabId: tabId ?? this.#pages.tabsOf(page)[0], frameId: frameId ?? 0 };
    }

    async #read(page, { requestId, url }) {
        this.#reading.add(requestId);
        const place = this.#byPage.get(page).find(each => each.requestId === requestId);
        const text = await this.#requests.hiding(url, () => playlistText({ ...place, url }));
        this.#reading.delete(requestId);
        // With '' the host does not wait for it.
        this.#notifications.requestEvent('playlist', { requestId, url, pageUrl: page }, { data: text });
    }
}
