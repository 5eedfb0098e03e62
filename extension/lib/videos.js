// Asks the host for the video or the sound that the user means.

import { isWebAddress, withoutFragment } from './addresses.js';
import { assumedHeaders } from './headers.js';
import { HostError, errorOf } from './hosterror.js';

export class Videos {
    /** Called with what went wrong, and with null when the application has been asked. */
    onOutcome = _error => {};

    #host;

    constructor(host) { this.#host = host; }

    /** What was clicked in a page: an element that plays something, else a frame, else the page. */
    async pick(info, tab) {
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

    /**
     * One of what was found on a page; undefined when the page has been left meanwhile. All that is
     * known of it is named, since the host may have forgotten it.
     */
    async download(media, pageUrl) {
        if (!media) {
            this.onOutcome(new HostError('problemNoMedia'));
            return;
        }
        const { requestId, url, requestHeaders, responseHeaders } = media;
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
