// Hands downloads over to the application: those that the browser has begun, and those that the
// user picks from a page.

import { addressOf, isWebAddress, lastSegment } from './addresses.js';
import { cookieStoreOf, cookiesFor, usualReferrer } from './headers.js';
import { errorOf } from './hosterror.js';
import { postedText } from './requestlog.js';

const result = { added: '1', declined: '0' };
const leftToBrowser = 'ignoredDueSettings';

/** Some browsers choose the name of a file only after they have told of the download. */
const namePatience = 1000;

export class Downloads {
    /** Called with what went wrong, and with null when a download was handed over. */
    onOutcome = _error => {};

    #host;
    #settings;
    #requests;

    constructor(host, settings, requests) {
        this.#host = host;
        this.#settings = settings;
        this.#requests = requests;
    }

    /** To be called at once when the script starts: what one before it left paused goes on. */
    async resumeAll() {
        for (const [key, value] of Object.entries(await chrome.storage.local.get(null))) {
            if (key.startsWith(pausedPrefix))
                await resume(value);
        }
    }

    /** A download that the browser has just begun. It goes on there unless the application has it. */
    async onBegun(item) {
        if (!this.#isOurs(item))
            return;
        await pause(item.id);
        try {
            const request = await this.#requests.find(addressOf(item));
            const posted = request ? postedText(request) : null;
            if (posted === null) { // the application could not repeat it
                await resume(item.id);
                return;
            }
            const record = await this.#recordOf(item, posted, request.documentUrl);
            const answer = await this.#ask([record], { caught: true }, late => this.#onLate(item.id, late));
            if (this.#isDone(answer))
                await discard(item.id);
            else
                await resume(item.id);
            if (answer.error !== leftToBrowser)
                this.onOutcome(errorOf(answer));
        } catch (error) {
            await resume(item.id);
            this.onOutcome(error);
        }
    }

    /** Addresses that the user picked from a tab's page. */
    async add(urls, documentUrl, tabId) {
        try {
            const storeId = await cookieStoreOf(tabId);
            const records = await Promise.all(urls.map(url => describe({
                url,
                httpReferer: usualReferrer(url, documentUrl),
                documentUrl,
            }, storeId)));
            this.onOutcome(errorOf(await this.#ask(records, { caught: false })));
        } catch (error) {
            this.onOutcome(error);
        }
    }

    /** The application may have been silent because it asked the user; the browser went on meanwhile. */
    async #onLate(id, answer) {
        const [item] = await chrome.downloads.search({ id });
        if (this.#isDone(answer) && item?.state === 'in_progress')
            await discard(id);
        this.onOutcome(errorOf(answer));
    }

    /** Whether nothing is left to the browser: the application has the download, or nobody wants it. */
    #isDone(answer) {
        return answer.result === result.added || (answer.result === result.declined
            && this.#settings.current?.browser.monitor.allowDownload === false);
    }

    #isOurs(item) {
        // The application would remember what was downloaded in a private window.
        return item.state === 'in_progress' && !item.byExtensionId && !item.incognito
            && isWebAddress(addressOf(item))
            && this.#settings.current?.browser.monitor.enable !== false;
    }

    async #recordOf(item, posted, documentUrl) {
        const url = addressOf(item);
        const size = item.fileSize > 0 ? item.fileSize : item.totalBytes;
        return describe({
            url,
            originalUrl: item.url,
            suggestedName: await nameOf(item),
            httpReferer: item.referrer ?? '',
            documentUrl: documentUrl || item.referrer || '',
            httpPostData: posted,
            fileSize: String(size > 0 ? size : -1), // the host knows -1 as "not known"
        }, item.cookieStoreId);
    }

    #ask(records, { caught }, onLate) {
        return this.#host.askApplication('create_downloads', {
            create_downloads: {
                downloads: { item: records },
                catchedDownloads: caught ? '1' : '0',
                ignoreSettings: caught ? '0' : '1',
                waitResponse: '1',
            },
        }, onLate);
    }
}

/** The name under which the browser saves a file; else the last part of its address. */
async function nameOf(item) {
    const path = item.filename || await filenameOf(item.id);
    return path.split(/[/\\]/).pop() || lastSegment(addressOf(item));
}

/** Resolves once the browser has chosen the file, with '' when that takes too long. */
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
        const timer = setTimeout(() => done(''), namePatience);
        chrome.downloads.onChanged.addListener(onChanged);
        // It may have been chosen before anybody listened.
        chrome.downloads.search({ id }).then(([found]) => { if (found?.filename) done(found.filename); });
    });
}

/** Completes a record by what this browser would send to the server. */
async function describe(record, storeId) {
    return { ...record, userAgent: navigator.userAgent, httpCookies: await cookiesFor(record.url, storeId) };
}

// What a download allows depends on how far it is, and it goes on meanwhile: a small one is
// complete before it can be paused. Each of these does what is left to do.

/**
 * Chromium keeps the connection of a paused download. Firefox drops it and later asks the server
 * again, which fails for what was posted and for servers that cannot resume; there, a download goes
 * on until the application has it. (Only Chromium's downloads have the event named here.)
 */
const pausesWithoutLoss = 'onDeterminingFilename' in chrome.downloads;

/** What is paused is kept under such a key: a script that ends meanwhile can answer for it no more. */
const pausedPrefix = 'paused.';

async function pause(id) {
    if (!pausesWithoutLoss)
        return;
    await chrome.storage.local.set({ [pausedPrefix + id]: id }).catch(() => {});
    await chrome.downloads.pause(id).catch(() => {});
}

async function resume(id) {
    const [item] = await chrome.downloads.search({ id });
    if (item?.paused)
        await chrome.downloads.resume(id).catch(() => {});
    await chrome.storage.local.remove(pausedPrefix + id).catch(() => {});
}

async function discard(id) {
    await chrome.downloads.cancel(id).catch(() => {});
    const [item] = await chrome.downloads.search({ id });
    if (item?.state === 'complete')
        await chrome.downloads.removeFile(id).catch(() => {});
    await chrome.downloads.erase({ id });
    await chrome.storage.local.remove(pausedPrefix + id).catch(() => {});
}
