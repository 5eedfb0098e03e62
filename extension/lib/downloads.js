// Hands downloads over to the application: those that the browser has begun, and those that the
// user picks from a page.

import { HostError } from './nativehost.js';
import { postedText } from './requestlog.js';

const result = { added: '1', declined: '0' };
const leftToBrowser = 'ignoredDueSettings';

/** Longer than the host itself waits for the application to come up. */
const answerPatience = 60_000;

/** Some browsers choose the name of a file only after they have told of the download. */
const namePatience = 1000;

/** Errors that the host names, and the texts that tell a user of them. */
const knownErrors = {
    'app_not_installed': 'problemApplicationMissing',
    'invalid_parameter': 'problemAddressRefused',
    'invalid arguments': 'problemNothingToDownload',
};

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

    /** A download that the browser has just begun. It goes on there unless the application has it. */
    async onBegun(item) {
        if (!this.#isOurs(item))
            return;
        const posted = this.#postedFor(item);
        if (posted === null)
            return;
        await pause(item.id);
        try {
            const record = await this.#recordOf(item, posted);
            const answer = await this.#ask([record], { caught: true });
            const unwanted = answer.result === result.declined
                && this.#settings.current?.browser.monitor.allowDownload === false;
            if (answer.result === result.added || unwanted)
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

    /** Addresses that the user picked from a page. */
    async add(urls, documentUrl) {
        try {
            const records = await Promise.all(urls.map(url => describe({
                url,
                httpReferer: documentUrl,
                documentUrl,
            })));
            this.onOutcome(errorOf(await this.#ask(records, { caught: false })));
        } catch (error) {
            this.onOutcome(error);
        }
    }

    #isOurs(item) {
        return item.state === 'in_progress' && !item.byExtensionId
            && /^https?:/i.test(addressOf(item))
            && this.#settings.current?.browser.monitor.enable !== false;
    }

    /** What was posted to get a download; null when the application could not repeat that. */
    #postedFor(item) {
        const request = this.#requests.find(addressOf(item));
        return request ? postedText(request) : '';
    }

    async #recordOf(item, posted) {
        const url = addressOf(item);
        const size = item.fileSize > 0 ? item.fileSize : item.totalBytes;
        return describe({
            url,
            originalUrl: item.url,
            suggestedName: await nameOf(item),
            httpReferer: item.referrer ?? '',
            documentUrl: this.#requests.find(url)?.documentUrl || item.referrer || '',
            httpPostData: posted,
            fileSize: String(size > 0 ? size : -1), // the host knows -1 as "not known"
        });
    }

    async #ask(records, { caught }) {
        let timer;
        const patience = new Promise((_, reject) => {
            timer = setTimeout(() => reject(new HostError('problemApplicationSilent')), answerPatience);
        });
        const answer = this.#host.ask('create_downloads', {
            create_downloads: {
                downloads: { item: records },
                catchedDownloads: caught ? '1' : '0',
                ignoreSettings: caught ? '0' : '1',
                waitResponse: '1',
            },
        });
        return Promise.race([answer, patience]).finally(() => clearTimeout(timer));
    }
}

/** Where a download comes from after all redirections, as far as the browser tells. */
function addressOf(item) { return item.finalUrl || item.url; }

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

function lastSegment(url) {
    const segment = new URL(url).pathname.split('/').pop();
    try {
        return decodeURIComponent(segment);
    } catch {
        return segment;
    }
}

function errorOf({ error }) {
    if (!error)
        return null;
    return new HostError(knownErrors[error] ?? 'problemApplicationFailed', error);
}

/** Completes a record by what this browser would send to the server. */
async function describe(record) {
    const cookies = await chrome.cookies.getAll({ url: record.url }).catch(() => []);
    return {
        ...record,
        userAgent: navigator.userAgent,
        httpCookies: cookies.map(cookie => `${cookie.name}=${cookie.value}`).join('; '),
    };
}

// What a download allows depends on how far it is, and it goes on meanwhile: a small one is
// complete before it can be paused. Each of these does what is left to do.

/**
 * Chromium keeps the connection of a paused download. Firefox drops it and later asks the server
 * again, which fails for what was posted and for servers that cannot resume; there, a download goes
 * on until the application has it. (Only Chromium's downloads have the event named here.)
 */
const pausesWithoutLoss = 'onDeterminingFilename' in chrome.downloads;

async function pause(id) {
    if (pausesWithoutLoss)
        await chrome.downloads.pause(id).catch(() => {});
}

async function resume(id) {
    const [item] = await chrome.downloads.search({ id });
    if (item?.paused)
        await chrome.downloads.resume(id).catch(() => {});
}

async function discard(id) {
    await chrome.downloads.cancel(id).catch(() => {});
    const [item] = await chrome.downloads.search({ id });
    if (item?.state === 'complete')
        await chrome.downloads.removeFile(id).catch(() => {});
    await chrome.downloads.erase({ id });
}
