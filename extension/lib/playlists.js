// The text of a playlist that a page has fetched. A browser does not show an extension what a page
// is answered, but the page can have it again, usually without asking the server.

const longest = 1024 * 1024;

/** In milliseconds. Until a playlist is read, what the page asks of its address is passed over. */
const patience = 10_000;

/** Resolves with '' when it cannot be fetched. */
export async function playlistText({ tabId, frameId, url }) {
    try {
        const read = chrome.scripting.executeScript({
            target: { tabId, frameIds: [frameId] },
            func: fetchHere,
            args: [url, longest],
        });
        const late = new Promise(resolve => { setTimeout(resolve, patience, []); });
        const [injected] = await Promise.race([read, late]);
        return injected?.result ?? '';
    } catch {
        return ''; // the frame is gone
    }
}

/** Runs in the page, so it can use nothing from here. */
async function fetchHere(url, most) {
    const response = await fetch(url, { cache: 'force-cache' }).catch(() => null);
    return response?.ok ? (await response.text()).slice(0, most) : '';
}
