// The text of a playlist that a page has fetched. Extensions do not see response bodies, but a script in
// the page can fetch it again, usually from the cache.

/** In characters. */
const maxLength = 1024 * 1024;

/** In milliseconds. While a playlist is read, the page's requests for its URL are ignored. */
const timeoutMs = 10_000;

/** Resolves with '' when it cannot be fetched. */
export async function playlistText({ tabId, frameId, url }) {
    try {
        const read = chrome.scripting.executeScript({
            target: { tabId, frameIds: [frameId] },
            func: fetchHere,
            args: [url, maxLength],
        });
        const late = new Promise(resolve => { setTimeout(resolve, timeoutMs, []); });
        const [injected] = await Promise.race([read, late]);
        return injected?.result ?? '';
    } catch {
        return ''; // the frame was removed
    }
}

/** Runs in the page, so it must be self-contained. */
async function fetchHere(url, length) {
    const response = await fetch(url, { cache: 'force-cache' }).catch(() => null);
    return response?.ok ? (await response.text()).slice(0, length) : '';
}
