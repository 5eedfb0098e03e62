// Asks the host for the video or the sound that the user means.

import { isWebAddress, withoutFragment } from './addresses.js';
import { assumedHeaders } from './headers.js';
import { HostError, errorOf } from './hosterror.js';

export class Videos {
    /** Called with what went wrong, and with null when the application has been asked. */
    onOutcome = _error => {};

    #host;
    #pages;

    constructor(host, pages) {
        this.#host = host;
        this.#pages = pages;
    }

    /**
     * What was clicked in a page: an element that plays something, else a frame, else the page. The
     * host forgets after some minutes what a page may play for hours, the playlist of a stream whose
     * segments it still sees; so what was found here is named to it.
     */
    async pick(info, tab) {
        const found = this.#pages.mediaOn(tab.id) ?? [];
        const media = isWebAddress(info.srcUrl)
            ? found.find(each => each.url === withoutFragment(info.srcUrl))
            : bestOf(found, info.frameId);
        if (media)
            await this.download(media);
        else
            await this.#search(info, tab);
    }

    async #search(info, tab) {
        const pageUrl = withoutFragment(tab.url ?? info.pageUrl);
        const frameUrl = info.frameId ? withoutFragment(info.frameUrl ?? '') : '';
        const task = { webPageUrl: pageUrl, srcTabUrl: pageUrl, frameUrl };
        // Players that put a video together from pieces give it an address of their own.
        if (isWebAddress(info.srcUrl)) {
            task.url = withoutFragment(info.srcUrl);
            task.requestHeaders = await assumedHeaders(task.url, frameUrl || pageUrl, tab.id);
        }
        await this.#send(task);
    }

    /** One of what was found on a page; undefined when the page has been left meanwhile. */
    async download(media) {
        if (!media) {
            this.onOutcome(new HostError('problemNoMedia'));
            return;
        }
        const { requestId, url, pageUrl, requestHeaders, responseHeaders } = media;
        await this.#send({
            requestId, url, requestHeaders, responseHeaders, webPageUrl: pageUrl, srcTabUrl: pageUrl,
        });
    }

    async #send(task) {
        try {
            this.onOutcome(errorOf(await this.#host.askApplication('video_sniffer', { video_sniffer: task })));
        } catch (error) {
            this.onOutcome(error);
        }
    }
}

/** The same order as the host's: those of the frame, streams, the larger, the newer. */
function bestOf(media, frameId) {
    const ranks = [
        each => Boolean(frameId) && each.frameId === frameId,
        each => each.kind === 'stream',
        each => each.size,
        each => media.indexOf(each),
    ];
    return [...media].sort((a, b) => ranks.reduce((order, rank) => order || rank(b) - rank(a), 0))[0];
}
