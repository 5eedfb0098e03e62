// Parts of addresses.

export function isWebAddress(url) { return /^https?:/i.test(url ?? ''); }

export function withoutFragment(url) { return url.split('#', 1)[0]; }

/** The last part of an address's path, decoded where that is possible; may be empty. */
export function lastSegment(url) {
    const segment = new URL(url).pathname.split('/').pop();
    try {
        return decodeURIComponent(segment);
    } catch {
        return segment;
    }
}

/** Where a download of the browser comes from after all redirections, as far as the browser tells. */
export function addressOf(item) { return item.finalUrl || item.url; }
