// Hands downloads over to the application: those that the browser has started, and those that the
// user picks from a page. docs/downloads.md lists all outcomes.

import { addressOf, lastSegment } from './addresses.js';
import { discard, find, goOn, isCancelled, listenForNames, lookUp, nameOf, pause } from './browserdownloads.js';
import { isToBeCaught, mayBeCaught } from './capture.js';
import { cookiesForDownload, cookiesForLink } from './cookies.js';
import { stage } from './handovers.js';
import { errorOf } from './hostanswers.js';
import { HostError } from './hosterror.js';
import { Listeners } from './listeners.js';
import { place } from './outcomes.js';
import { referrerFor } from './referrer.js';
import { postedText } from './requestlog.js';

const result = { added: '1', declined: '0' };
const leftToBrowser = 'ignoredDueSettings';

/** In milliseconds: the maximum time for which the user sees a paused download. */
const pauseTimeoutMs = 5000;

const testFileName = 'kovalo-test.txt';

/** In milliseconds: longer than the host waits for an application that does not come up. */
const testDownloadTimeoutMs = 40_000;

export class Downloads {
    #host;
    #settings;
    #requests;
    #gestures;
    #keeping;
    #policies;
    #handovers;
    #outcomes;
    #listeners = new Listeners([[chrome.downloads.onCreated, item => this.#onBegun(item)]]);

    /** @param {object} parts the objects that this uses, by name */
    constructor({ host, settings, requests, gestures, keeping, policies, handovers, outcomes }) {
        this.#host = host;
        this.#settings = settings;
        this.#requests = requests;
        this.#gestures = gestures;
        this.#keeping = keeping;
        this.#policies = policies;
        this.#handovers = handovers;
        this.#outcomes = outcomes;
    }

    /** To be called at once when the script starts: completes hand-overs that were interrupted. */
    async recover() {
        for (const left of await this.#handovers.restore()) {
            const hasEnded = this.#handovers.isOfEarlierRun(left);
            const item = await find(left, hasEnded);
            if (left.stage === stage.taken) {
                if (item?.state === 'complete')
                    this.#report(left.name, place.both); // the user may have opened it since
                else if (item)
                    await discard(item.id);
            } else if (isCancelled(item) && !hasEnded) {
                // It is as the user wanted it.
            } else if (!item || !await goOn(item.id, left.canRestart)) {
                this.#report(left.name, place.lost);
            } else if (left.stage === stage.offered) {
                this.#report(left.name, place.unclear);
            }
            await this.#handovers.drop(left);
        }
    }

    /**
     * Whether downloads that begin are caught. To be switched on at once when the script starts: it may have
     * been started for one of them, and the settings are not known yet. While it is off, nothing is listened
     * to that only catching needs.
     */
    setCatching(on) {
        this.#listeners.set(on);
        this.#requests.setListening(on);
        this.#gestures.setListening(on);
        listenForNames(on);
    }

    /** Handles a download that has just begun. It stays in the browser unless the application takes it. */
    async #onBegun(item) {
        const request = await this.#requests.take(addressOf(item)); // consumed, whatever the outcome
        if (this.#settings.current?.browser.monitor.enable === false || !mayBeCaught(item)
            || !isToBeCaught(item, request, request && this.#gestures.savesItself(request)))
            return;
        const now = await lookUp(item.id); // only here Chromium reports other extensions
        if (!now || now.byExtensionId || now.state === 'interrupted')
            return;
        // At once: a file that is complete when the application takes it would conflict with its own.
        await Promise.all([this.#handovers.begin(item, isRepeatable(request)), pause(item.id)]);
        const isKept = await this.#keeping.keeps(request);
        const name = await nameOf(item);
        if (isKept)
            this.#report(name || nameIn(addressOf(item)), place.browser);
        if (isKept || name === undefined)
            await goOn(item.id);
        else
            await this.#handOver(item, name, request);
        await this.#handovers.drop(item);
    }

    /**
     * Links that the user picked.
     * @param {import('./pagelinks.js').Link[]} links
     * @param {{id: number, url?: string}} tab
     * @returns {Promise<string>} where they are afterwards, one of the places in outcomes.js
     */
    async add(links, tab) {
        const more = links.length > 1 ? ` (+${links.length - 1})` : '';
        const name = links.length > 0 ? nameIn(links[0].url) + more : '';
        try {
            const answer = await this.#ask(await Promise.all(links.map(each => this.#describe(each, tab))), {
                caught: false,
            });
            const error = errorOf(answer);
            const state = answer.result === result.declined ? place.nowhere : place.application;
            this.#report(name, error ? place.lost : state, error);
            return error ? place.lost : state;
        } catch (error) {
            this.#report(name, place.lost, error);
            return place.lost;
        }
    }

    /** Tests the whole chain with a small "data:" file. Resolves with the error, null on success. */
    async tryOne() {
        try {
            const text = encodeURIComponent(chrome.i18n.getMessage('testFileText'));
            return errorOf(await this.#ask([{
                url: `data:text/plain;charset=utf-8,${text}`,
                suggestedName: testFileName,
                fileSize: '-1',
            }], { caught: false, timeoutMs: testDownloadTimeoutMs }));
        } catch (error) {
            return error;
        }
    }

    async #handOver(item, name, request) {
        const canRestart = isRepeatable(request);
        let isLate = false;
        const timer = setTimeout(() => {
            isLate = true;
            goOn(item.id);
        }, pauseTimeoutMs);
        try {
            const record = await recordOf(item, name, request);
            await this.#handovers.reach(stage.offered, item, name);
            const answer = await this.#ask([record], { caught: true },
                                           late => this.#settle(item, name, late, { canRestart, isLate: true }));
            clearTimeout(timer); // it must not be resumed while it is being discarded
            await this.#settle(item, name, answer, { canRestart, isLate });
        } catch (error) {
            await this.#leave(item, name, error, { canRestart });
        } finally {
            clearTimeout(timer);
        }
    }

    async #settle(item, name, answer, { canRestart, isLate }) {
        const isTaken = answer.result === result.added;
        if (!isTaken && !this.#isUnwanted(answer)) {
            await this.#leave(item, name, errorOf(answer), { canRestart, isByRule: answer.error === leftToBrowser });
        } else if (isLate && (await lookUp(item.id))?.state === 'complete') {
            // The user may have opened it already.
            this.#report(name, isTaken ? place.both : place.browser);
        } else {
            await this.#handovers.reach(stage.taken, item, name);
            await discard(item.id);
            await this.#handovers.drop(item);
            this.#report(name, isTaken ? place.application : place.nowhere);
        }
    }

    /** Leaves it to the browser. */
    async #leave(item, name, error, { canRestart, isByRule = false }) {
        if (isCancelled(await lookUp(item.id)))
            return; // by the user
        const goesOn = await goOn(item.id, canRestart);
        if (!goesOn)
            this.#report(name, place.lost, error);
        else if (!isByRule)
            this.#report(name, place.browser, error);
    }

    #report(...outcome) { this.#outcomes.report(...outcome); }

    /** Whether the user declined it and does not want it in the browser, either. */
    #isUnwanted(answer) {
        return answer.result === result.declined
            && this.#settings.current?.browser.monitor.allowDownload === false;
    }

    async #describe({ url, documentUrl, policy, frameId }, tab) {
        return {
            url,
            httpReferer: referrerFor(url, documentUrl, policy || await this.#policies.of(documentUrl)),
            documentUrl,
            userAgent: navigator.userAgent,
            httpCookies: await cookiesForLink(url, documentUrl, tab, frameId > 0),
        };
    }

    #ask(records, { caught, timeoutMs }, onLate) {
        if (records.length === 0)
            return Promise.reject(new HostError('problemNothingToDownload'));
        return this.#host.askApplication('create_downloads', {
            create_downloads: {
                downloads: { item: records },
                catchedDownloads: caught ? '1' : '0',
                ignoreSettings: caught ? '0' : '1',
                waitResponse: '1',
            },
        }, { onLate, timeoutMs });
    }
}

/** The record of a browser's download, with the headers that the browser sent. */
async function recordOf(item, name, request) {
    const { sent, origin, type } = request;
    const url = addressOf(item);
    const referrer = item.referrer ?? '';
    // Chromium does not expose the request for a link with the attribute "download".
    const isShown = type !== 'other';
    // Unknown for compressed responses: the file is larger than the response's Content-Length.
    const size = item.fileSize > 0 ? item.fileSize : item.totalBytes;
    return {
        url,
        originalUrl: item.url,
        suggestedName: name,
        httpReferer: isShown ? sent.referer : referrer,
        documentUrl: origin || referrer,
        userAgent: sent.userAgent || navigator.userAgent,
        httpCookies: isShown ? sent.cookie : await cookiesForDownload(url, referrer || origin),
        httpPostData: postedText(request),
        fileSize: String(size > 0 ? size : -1), // -1: unknown
    };
}

/** Whether the browser may request it again. */
function isRepeatable({ method }) { return method === 'GET'; }

/** A name for a link's file, for messages to the user. */
function nameIn(url) { return lastSegment(url) || new URL(url).hostname; }
