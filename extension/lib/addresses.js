// Parts of URLs.

export function isWebAddress(url) { return /^https?:/i.test(url ?? ''); }

/** In characters. Servers refuse longer URLs, and a page could create many of them. */
const maxUrlLength = 16 * 1024;

export function isTooLong(url) { return url.length > maxUrlLength; }

export function withoutFragment(url) { return url.split('#', 1)[0]; }

/** The last segment of a URL's path, decoded if possible; may be empty. */
export function lastSegment(url) {
    const segment = new URL(url).pathname.split('/').pop();
    try {
        return decodeURIComponent(segment);
    } catch {
        return segment;
    }
}

/** The URL of a download after redirects, if the browser reports it. */
export function addressOf(item) { return item.finalUrl || item.url; }
