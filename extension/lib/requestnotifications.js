// Sends network_request_notification tasks: the pages' requests, and the pages that tabs show.

export class RequestNotifications {
    #host;

    constructor(host) { this.#host = host; }

    /** Asks the host to report the media that it finds. */
    wantMedia() { this.#send('media_wanted', {}); }

    tabNavigated(srcTabUrl, url) { this.#send('tab_navigated', { srcTabUrl, data: url }); }
    tabUrlChanged(srcTabUrl, url) { this.#send('tab_url_changed', { srcTabUrl, data: url }); }
    tabClosed(srcTabUrl) { this.#send('tab_closed', { srcTabUrl }); }

    /**
     * Reports an event of a request.
     * @param {'request'|'redirect'|'response'|'playlist'|'part'|'completed'|'failed'} type
     * @param {{requestId: string, url: string, pageUrl: string}} request
     * @param {object} members further members of that type
     */
    requestEvent(type, { requestId, url, pageUrl }, members = {}) {
        this.#send(type, { requestId, url, srcTabUrl: pageUrl, ...members });
    }

    /** Reports media to a new host that a previous host had found. */
    knownMedia(pageUrl, { requestId, url, originalUrl, method, requestHeaders, status, responseHeaders, part }) {
        const request = { requestId, url: originalUrl, pageUrl };
        this.requestEvent('request', request, { requestHeaders, data: method });
        if (url !== originalUrl)
            this.requestEvent('redirect', request, { data: url });
        this.requestEvent('response', request, { responseHeaders, data: status });
        this.requestEvent('completed', request);
        if (part)
            this.requestEvent('part', request);
    }

    #send(type, members) {
        this.#host.tell('network_request_notification', { network_request_notification: { type, ...members } });
    }
}
