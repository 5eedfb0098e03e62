// Downloads the video or audio that the user chose, through the host.

import { isWebAddress, withoutFragment } from './addresses.js';
import { assumedHeaders } from './headers.js';
import { errorOf } from './hostanswers.js';
import { HostError } from './hosterror.js';

export class Videos {
    /** Called with the error, or null once the application has been asked. */
    onOutcome = _error => {};

    #host;

    constructor(host) { this.#host = host; }

    /** For the context menu: the clicked media element, else the frame, else the page. */
    async pick(info, tab) {
        const pageUrl = withoutFragment(tab.url ?? info.pageUrl);
        const frameUrl = info.frameId ? withoutFragment(info.frameUrl ?? '') : '';
        const task = { webPageUrl: pageUrl, srcTabUrl: pageUrl, frameUrl };
        // Media Source Extensions: the element's blob: URL is not the video's.
        if (isWebAddress(info.srcUrl)) {
            task.url = withoutFragment(info.srcUrl);
            task.requestHeaders = await assumedHeaders(task.url, frameUrl || pageUrl, tab.id);
        }
        await this.#send(task);
    }

    /**
     * For an entry of the page's list; undefined if the page was left meanwhile. All known members are
     * sent, since the host may have dropped the entry.
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
