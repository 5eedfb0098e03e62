// What can be done with a download of the browser. What it allows depends on how far it is, and it goes
// on meanwhile: a small one is complete before it can be paused. Each of these does what is left to do.

import { askedAfter } from './capture.js';

/**
 * Chromium keeps the connection of a paused download. Firefox drops it and later asks the server
 * again, which fails for what was posted and for servers that cannot resume; there, a download goes
 * on until the application has it. (Only Chromium's downloads have the event named here.)
 */
const pausesWithoutLoss = 'onDeterminingFilename' in chrome.downloads;

/** Its present state; undefined when the browser has forgotten it. */
export async function lookUp(id) { return (await chrome.downloads.search({ id }))[0]; }

export async function pause(id) {
    if (pausesWithoutLoss)
        await chrome.downloads.pause(id).catch(() => {});
}

/**
 * Lets it go on in the browser, wherever it stopped. Resolves with whether it does, or is complete.
 * @param {boolean} canRestart whether it may begin anew, though the user or the end of the browser has
 *     ended it, which look the same
 */
export async function goOn(id, canRestart = false) {
    const item = await lookUp(id);
    if (!item)
        return true; // who removed it from the list knows why
    if (item.paused || (item.state === 'interrupted' && item.canResume))
        return chrome.downloads.resume(id).then(() => true, () => false);
    if (item.state !== 'interrupted')
        return true;
    return canRestart ? restart(item) : item.error === 'USER_CANCELED';
}

/** Begins it anew in the browser, which does not offer it to anybody again. */
async function restart({ id, url }) {
    await chrome.downloads.erase({ id });
    return chrome.downloads.download({ url }).then(() => true, () => false);
}

/** What is left of one that was there when the browser ended. Firefox begins such downloads anew. */
export async function find({ url, startTime }) {
    const items = await chrome.downloads.search({ url });
    return items.find(each => each.startTime === startTime)
        ?? items.find(each => each.startTime > startTime && each.state !== 'complete');
}

/** Removes it from the browser, with what it has of the file. */
export async function discard(id) {
    await chrome.downloads.cancel(id).catch(() => {});
    if ((await lookUp(id))?.state === 'complete')
        await chrome.downloads.removeFile(id).catch(() => {});
    await chrome.downloads.erase({ id }).catch(() => {});
}

/**
 * The name under which the browser saves a file. Chromium chooses it within some ms, Firefox before it
 * tells of a download.
 * @returns {Promise<string|undefined>} undefined when the user is asked for it
 */
export async function nameOf(item) {
    const path = item.filename || await filenameOf(item.id);
    return path && path.split(/[/\\]/).pop();
}

function filenameOf(id) {
    return new Promise(resolve => {
        const done = filename => {
            clearTimeout(timer);
            chrome.downloads.onChanged.removeListener(onChanged);
            resolve(filename);
        };
        const onChanged = change => {
            if (change.id === id && change.filename?.current)
                done(change.filename.current);
        };
        const timer = setTimeout(done, askedAfter);
        chrome.downloads.onChanged.addListener(onChanged);
        // It may have been chosen before anybody listened.
        lookUp(id).then(found => { if (found?.filename) done(found.filename); });
    });
}
