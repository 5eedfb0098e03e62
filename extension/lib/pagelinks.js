// The links of a page, read inside it.

/**
 * @param {number} tabId
 * @param {{frameId?: number, selectedOnly?: boolean}} where one frame of the page, or all of it
 * @returns {Promise<{urls: string[], documentUrl: string}>} each address once; none of a page that
 *     the browser keeps to itself
 */
export async function pageLinks(tabId, { frameId, selectedOnly = false } = {}) {
    const target = { tabId };
    if (frameId === undefined)
        target.allFrames = true;
    else
        target.frameIds = [frameId];
    const results = await chrome.scripting.executeScript({
        target,
        func: linksHere,
        args: [selectedOnly],
    }).catch(() => []);
    const frames = results.map(each => each.result).filter(Boolean);
    return {
        urls: [...new Set(frames.flatMap(frame => frame.urls))],
        documentUrl: frames[0]?.documentUrl ?? '',
    };
}

/** Runs in the page, so it can use nothing from here. */
function linksHere(selectedOnly) {
    const selection = document.getSelection();
    const urls = [...document.links]
        .filter(link => !selectedOnly || selection.containsNode(link, true))
        .map(link => link.href)
        .filter(url => /^https?:/i.test(url));
    return { urls, documentUrl: document.URL };
}
