// The links of a page, read inside it.

import { policyIn } from './referrer.js';

/**
 * @typedef {object} Link
 * @property {string} url
 * @property {string} documentUrl the page, or the frame of it, where the link is
 * @property {string} policy the referrer policy of that page or of the link; '' for none
 * @property {number} frameId 0 for the page itself
 * @property {string} text the link's text
 * @property {string|null} download the value of the attribute; null without it
 */

/**
 * @param {number} tabId
 * @param {{frameId?: number, selectedOnly?: boolean}} where one frame of the page, or all of it
 * @returns {Promise<Link[]>} each URL once; none for pages that extensions cannot access
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
    const links = results.filter(each => each.result).flatMap(({ result, frameId: place }) =>
        result.links.map(({ url, policy, text, download }) => ({
            url,
            text,
            download,
            documentUrl: result.documentUrl,
            policy: policyIn(policy) || policyIn(result.policy),
            frameId: place,
        })));
    return [...new Map(links.reverse().map(each => [each.url, each])).values()].reverse();
}

/** The link with this URL in a page, from which it may have been removed meanwhile. */
export async function pageLink(tabId, url, frameId, documentUrl) {
    const found = (await pageLinks(tabId, { frameId })).find(each => each.url === url);
    return found ?? { url, documentUrl, policy: '', frameId, text: '', download: null };
}

/** Runs in the page, so it must be self-contained. */
function linksHere(selectedOnly) {
    const selection = document.getSelection();
    const links = [...document.links]
        .filter(link => !selectedOnly || selection.containsNode(link, true))
        .map(link => ({
            url: link.href,
            policy: link.relList.contains('noreferrer') ? 'no-referrer' : link.referrerPolicy,
            text: link.textContent.replace(/\s+/g, ' ').trim().slice(0, 200),
            download: link.getAttribute('download'),
        }))
        .filter(({ url }) => /^https?:/i.test(url));
    const policy = [...document.querySelectorAll('meta[name="referrer" i]')].map(each => each.content).join();
    return { links, documentUrl: document.URL, policy };
}
