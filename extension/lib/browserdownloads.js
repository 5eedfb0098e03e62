// Operations on the browser's downloads. A download progresses meanwhile (a small one is complete before
// it can be paused), so each operation does what is still possible.

import { Listeners } from './listeners.js';

/**
 * In milliseconds. If it takes longer until the path of a file is known, the browser has asked the user
 * where to save it: to answer a dialog, which has to open first, takes longer.
 */
export const askedAfter = 300;

/**
 * Into how many round trips to Chromium that time is split, so that it becomes longer on a busy machine:
 * there a path took up to 182 ms without a dialog, or more.
 */
const turns = 10;

/** In milliseconds: after this time it has asked the user, however busy it is. */
const surelyAskedAfter = 1000;

/** Only Chromium has that event. */
export const inChromium = 'onDeterminingFilename' in chrome.downloads;

/** Its current state; undefined when it was removed from the browser's list. */
export async function lookUp(id) { return (await chrome.downloads.search({ id }))[0]; }

/**
 * Chromium keeps the connection of a paused download. Firefox closes it and later sends a new request,
 * which fails for a POST and for servers that do not support resuming; so in Firefox the download
 * continues until the application has it.
 */
export async function pause(id) {
    if (inChromium)
        await chrome.downloads.pause(id).catch(() => {});
}

/**
 * Continues it in the browser, whatever its state. Resolves with whether it continues, or is complete.
 * @param {boolean} canRestart whether it may start over if it cannot be resumed
 */
export async function goOn(id, canRestart = false) {
    const item = await lookUp(id);
    if (!item)
        return true; // removed from the list on purpose
    const isInterrupted = item.state === 'interrupted';
    if (!item.paused && !isInterrupted)
        return true;
    if ((item.paused || item.canResume) && await chrome.downloads.resume(id).then(() => true, () => false))
        return true;
    // Firefox reports downloads as resumable even if the server does not support ranges.
    return isInterrupted && canRestart && restart(item);
}

/**
 * Whether the user has cancelled it. Browsers report the same for downloads that were interrupted when
 * the browser ended, and Firefox for paused ones.
 */
export function isCancelled(item) {
    return item?.state === 'interrupted' && item.error === 'USER_CANCELED' && !item.canResume;
}

/** Restarts it in the browser; the new download is not offered to the application. */
async function restart({ id, url }) {
    await chrome.downloads.erase({ id });
    return chrome.downloads.download({ url }).then(() => true, () => false);
}

/**
 * Finds a download that was started earlier.
 * @param {boolean} hasEnded whether the browser has ended since: then Firefox restarts incomplete ones
 */
export async function find({ url, startTime }, hasEnded) {
    const items = await chrome.downloads.search({ url });
    const isAnew = each => hasEnded && !inChromium && each.startTime > startTime && each.state !== 'complete';
    return items.find(each => each.startTime === startTime) ?? items.find(isAnew);
}

/** Removes it from the browser, with its partial file. */
export async function discard(id) {
    await chrome.downloads.cancel(id).catch(() => {});
    if ((await lookUp(id))?.state === 'complete')
        await chrome.downloads.removeFile(id).catch(() => {});
    await chrome.downloads.erase({ id }).catch(() => {});
}

/** The names that Chromium has chosen, by download id; see nameOf(). */
const paths = new Map();
const rememberedFor = 10_000;

const nameListeners = new Listeners(inChromium
    // Chromium continues, and may ask the user, after the listener has returned. Without a suggestion it
    // uses its own name.
    ? [[chrome.downloads.onDeterminingFilename, ({ id }) => void pathOf(id)]] : []);

/** To be switched on at once when the script starts. */
export function listenForNames(on) { nameListeners.set(on); }

/**
 * The name under which the browser saves a file. Chromium chooses it within milliseconds, Firefox before
 * it reports the download.
 * @returns {Promise<string|undefined>} undefined when the browser asks the user
 */
export async function nameOf(item) {
    const path = item.filename || await pathOf(item.id);
    return path && path.split(/[/\\]/).pop();
}

function pathOf(id) {
    if (!paths.has(id)) {
        paths.set(id, chosenPath(id));
        setTimeout(() => paths.delete(id), rememberedFor);
    }
    return paths.get(id);
}

function chosenPath(id) {
    return new Promise(resolve => {
        const began = Date.now();
        let timer;
        const done = path => {
            clearTimeout(timer);
            timer = null;
            chrome.downloads.onChanged.removeListener(onChanged);
            // In a busy script, the event of the name still comes before the timeout.
            resolve(Date.now() - began > surelyAskedAfter ? undefined : path);
        };
        const onChanged = change => {
            if (change.id === id && change.filename?.current)
                done(change.filename.current);
        };
        const wait = left => {
            timer = setTimeout(async () => {
                await lookUp(id);
                if (timer && left > 1)
                    wait(left - 1);
                else if (timer)
                    done();
            }, askedAfter / turns);
        };
        chrome.downloads.onChanged.addListener(onChanged);
        wait(turns);
    });
}
