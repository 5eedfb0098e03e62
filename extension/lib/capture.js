// Decides which of the browser's downloads are offered to the application. docs/downloads.md lists the
// ways in which a download can begin. In doubt it stays in the browser: a file that the user saves with
// the browser's dialog must be where the user chose.

import { addressOf, isWebAddress, withoutFragment } from './addresses.js';
import { askedAfter, inChromium } from './browserdownloads.js';
import { postedText } from './requestlog.js';

/** The rules that apply when a download is created. */
export function mayBeCaught(item) {
    if (item.state !== 'in_progress' || item.byExtensionId || !isWebAddress(addressOf(item)))
        return false;
    // The application would keep a record of a private window's download.
    if (item.incognito)
        return false;
    // A saved page already has its path in Chromium, and no type in Firefox; the latter also holds for a
    // file that is saved from a page.
    return inChromium ? item.filename === '' : Boolean(item.mime);
}

/**
 * @param {import('./requestlog.js').BrowserRequest|undefined} request the one that started it
 * @param {boolean|undefined} savesItself whether the user's last gesture before it asked the browser to
 *     save it, see gestures.js
 */
export function isToBeCaught(item, request, savesItself) {
    if (!request?.sent || request.tabId < 0 || request.status < 200 || request.status > 299)
        return false;
    // Firefox reports a download after it has asked for the path; Chromium before, see nameOf().
    if (!inChromium && Date.parse(item.startTime) - request.answered > askedAfter)
        return false;
    // The application has no passwords, and posts only forms.
    if (request.sent.authorization || postedText(request) === null)
        return false;
    if (request.type === 'main_frame' || request.type === 'sub_frame')
        return !request.sent.purpose;
    return inChromium && request.type === 'other' && isDownloadLink(item, request) && savesItself === false;
}

/** Whether a page requested it, as for a link with the attribute "download". */
function isDownloadLink(item, { url, origin }) {
    return isWebAddress(origin) && withoutFragment(item.referrer ?? '') !== url;
}
