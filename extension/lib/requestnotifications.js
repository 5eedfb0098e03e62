// Tells the host what pages request, and which pages the tabs show.

export class RequestNotifications {
    #host;

    constructor(host) { this.#host = host; }

    /** From now on the host tells what it finds. */
    wantMedia() { this.#tell('media_wanted', {}); }

    tabNavigated(srcTabUrl, url) { this.#tell('tab_navigated', { srcTabUrl, data: url }); }
    tabUrlChanged(srcTabUrl, url) { this.#tell('tab_url_changed', { srcTabUrl, data: url }); }
    tabClosed(srcTabUrl) { this.#tell('tab_closed', { srcTabUrl }); }

    /**
     * What happened to a request.
     * @param {'request'|'redirect'|'response'|'playlist'|'part'|'completed'|'failed'} type
     * @param {{requestId: string, url: string, pageUrl: string}} request
     * @param {object} members what belongs to the type
     */
    requestTold(type, { requestId, url, pageUrl }, members = {}) {
        this.#tell(type, { requestId, url, srcTabUrl: pageUrl, ...members });
    }

    /** Tells a host that was just started of media that another one had found. */
    mediaAgain(pageUrl, { requestId, url, originalUrl, method, requestHeaders, status, responseHeaders, part }) {
        const request = { requestId, url: originalUrl, pageUrl };
        this.requestTold('request', request, { requestHeaders, data: method });
        if (url !== originalUrl)
            this.requestTold('redirect', request, { data: url });
        this.requestTold('response', request, { responseHeaders, data: status });
        this.requestTold('completed', request);
        if (part)
            this.requestTold('part', request);
    }

    #tell(type, members) {
        this.#host.tell('network_request_notification', { network_request_notification: { type, ...members } });
    }
}
