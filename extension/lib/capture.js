// Which of the downloads that begin in the browser are the application's. docs/downloads.md lists how
// a download can begin, and what tells one from another. In doubt it is the browser's: what a user
// saves with the browser's own dialog must be where he chose.

import { addressOf, isWebAddress, withoutFragment } from './addresses.js';
import { askedAfter, inChromium } from './browserdownloads.js';
import { postedText } from './requestlog.js';

/** What can be told of a download when it is created. */
export function mayBeCaught(item) {
    if (item.state !== 'in_progress' || item.byExtensionId || !isWebAddress(addressOf(item)))
        return false;
    // The application would remember what was downloaded in a private window.
    if (item.incognito)
        return false;
    // A page that is saved has its path already in Chromium; in Firefox it has no type, nor has what
    // is saved from a page.
    return inChromium ? item.filename === '' : Boolean(item.mime);
}

/**
 * @param {import('./requestlog.js').BrowserRequest|undefined} request the one it began with
 * @param {boolean|undefined} savesItself what the user's last gesture before it says, see gestures.js
 */
export function isToBeCaught(item, request, savesItself) {
    if (!request?.sent || request.tabId < 0 || request.status < 200 || request.status > 299)
        return false;
    // Firefox tells of a download after it has asked where to put it; Chromium before, see nameOf().
    if (!inChromium && Date.parse(item.startTime) - request.answered > askedAfter)
        return false;
    // The application knows no passwords, and does not post what is no form.
    if (request.sent.authorization || postedText(request) === null)
        return false;
    if (request.type === 'main_frame' || request.type === 'sub_frame')
        return !request.sent.purpose;
    return inChromium && request.type === 'other' && isDownloadLink(item, request) && savesItself === false;
}

/** Whether a page asked for it, as it does for a link with the attribute "download". */
function isDownloadLink(item, { url, origin }) {
    return isWebAddress(origin) && withoutFragment(item.referrer ?? '') !== url;
}
