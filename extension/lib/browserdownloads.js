// Operations on the browser's downloads. A download progresses meanwhile (a small one is complete before
// it can be paused), so each operation does what is still possible.

/**
 * In milliseconds. A browser that takes longer to choose the path of a file has asked the user, who has
 * chosen where it is to be. Nobody answers a dialog that has yet to open as fast as this.
 */
export const askedAfter = 300;

/**
 * In how many turns Chromium is given that time. In each it has to answer a question: where it is busy, a path
 * took up to 182 ms without the user, and more where everything else does.
 */
const turns = 10;

/** In milliseconds: it has asked the user, however busy it is. */
const surelyAskedAfter = 1000;

/** Only Chromium has that event. */
export const inChromium = 'onDeterminingFilename' in chrome.downloads;

/** Its current state; undefined when it was removed from the browser's list. */
export async function lookUp(id) { return (await chrome.downloads.search({ id }))[0]; }

/**
 * Chromium keeps the connection of a paused download. Firefox drops it and later asks the server
 * again, which fails for what was posted and for servers that cannot resume; there, a download goes
 * on until the application has it.
 */
export async function pause(id) {
    if (inChromium)
        await chrome.downloads.pause(id).catch(() => {});
}

/**
 * Lets it go on in the browser, wherever it stopped. Resolves with whether it does, or is complete.
 * @param {boolean} canRestart whether it may begin anew where it broke off
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
    // Firefox says that it can resume what the server then does not send in parts.
    return isInterrupted && canRestart && restart(item);
}

/**
 * Whether the user has cancelled it. Browsers say the same of what broke off as they ended, and Firefox
 * of what is paused.
 */
export function isCancelled(item) {
    return item?.state === 'interrupted' && item.error === 'USER_CANCELED' && !item.canResume;
}

/** Starts it again in the browser, which then does not offer it to the application. */
async function restart({ id, url }) {
    await chrome.downloads.erase({ id });
    return chrome.downloads.download({ url }).then(() => true, () => false);
}

/**
 * One that was begun before.
 * @param {boolean} hasEnded whether the browser was: Firefox begins then anew what was not complete
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

/** What Chromium calls each download, by id, as nameOf() tells it. */
const paths = new Map();
const rememberedFor = 10_000;

/** To be called at once when the script starts. */
export function listen() {
    // Chromium goes on, and may ask the user, when this has returned. As nothing is suggested, the name
    // is its own.
    chrome.downloads.onDeterminingFilename?.addListener(({ id }) => void pathOf(id));
}

/**
 * The name under which the browser saves a file. Chromium chooses it within some ms, Firefox before it
 * reports the download.
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
            // A script that is busy hears of the name before it hears that the time is over.
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
