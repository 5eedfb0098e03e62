// What the browser asked the servers lately: a download says neither that it was a POST nor what
// was posted, and not every browser says which page it came from.

const remembered = 500;
const formType = 'application/x-www-form-urlencoded';

export class RequestLog {
    /** Requests by id, the latest last. */
    #requests = new Map();

    /** To be called at once when the script starts. */
    listen() {
        const filter = { urls: ['http://*/*', 'https://*/*'], types: ['main_frame', 'sub_frame', 'other'] };
        chrome.webRequest.onBeforeRequest.addListener(
            details => this.#onRequest(details), filter, ['requestBody']);
        chrome.webRequest.onSendHeaders.addListener(
            details => this.#onHeaders(details), filter, ['requestHeaders']);
    }

    /** The latest request for an address, undefined when there was none. */
    find(url) {
        const wanted = withoutFragment(url);
        return [...this.#requests.values()].reverse().find(each => each.url === wanted);
    }

    #onRequest(details) {
        this.#requests.delete(details.requestId); // a redirection comes under the same id
        this.#requests.set(details.requestId, {
            url: withoutFragment(details.url),
            method: details.method,
            body: details.requestBody,
            contentType: '',
            // The page that was left for the download; a browser tells one of the two.
            documentUrl: details.originUrl ?? details.initiator ?? '',
        });
        if (this.#requests.size > remembered)
            this.#requests.delete(this.#requests.keys().next().value);
    }

    #onHeaders(details) {
        const request = this.#requests.get(details.requestId);
        const header = details.requestHeaders?.find(each => each.name.toLowerCase() === 'content-type');
        if (request && header)
            request.contentType = header.value.toLowerCase();
    }
}

/**
 * What a request posted, as the text that goes over the wire; '' for a request without a body.
 * null when the application could not repeat it: it posts forms, and nothing else.
 */
export function postedText({ method, body, contentType }) {
    if (method === 'GET')
        return '';
    if (method !== 'POST' || !body || body.error || !contentType.startsWith(formType))
        return null;
    if (body.formData) {
        const pairs = Object.entries(body.formData)
            .flatMap(([name, values]) => values.map(value => [name, value]));
        return new URLSearchParams(pairs).toString();
    }
    if (!body.raw?.every(part => part.bytes))
        return null;
    const decoder = new TextDecoder();
    return body.raw.map(part => decoder.decode(part.bytes, { stream: true })).join('');
}

function withoutFragment(url) { return url.split('#', 1)[0]; }
