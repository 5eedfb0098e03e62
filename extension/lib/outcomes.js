// The outcomes of hand-overs, for the popup, the button and the notifications.

import { HostError } from './hosterror.js';
import { SerialQueue } from './serialqueue.js';

const storageKey = 'outcomes';
const maxKept = 20;

/** Where the file ended up. */
export const place = {
    application: 'application',
    browser: 'browser',
    /** Complete in the browser before the application took it. */
    both: 'both',
    /** The application did not answer; the browser has it. */
    unclear: 'unclear',
    /** The user declined it. */
    nowhere: 'nowhere',
    /** It failed. */
    lost: 'lost',
};

/**
 * @typedef {object} Outcome without addresses
 * @property {string} id
 * @property {string} name of the file
 * @property {string} state one of the places
 * @property {string} reason the error, a key of a text or the application's text; '' for none
 * @property {string} detail the value of that text's placeholder
 * @property {number} time in milliseconds since 1970
 */

export class Outcomes {
    /** Called with the new outcome and its error, null on success. */
    onReported = (_outcome, _error) => {};
    /** Called with the whole list when it changed. */
    onListed = _outcomes => {};

    #changes = new SerialQueue();

    /** @param {Error|null} error why the file is not where the user wanted it */
    report(name, state, error = null) {
        const reported = error ?? this.#word(name, state);
        const outcome = {
            id: crypto.randomUUID(),
            name,
            state,
            reason: reported?.message ?? '',
            detail: reported?.detail ?? '',
            time: Date.now(),
        };
        this.#change(all => [...all, outcome].slice(-maxKept));
        this.onReported(outcome, reported);
    }

    /** The latest last. @returns {Promise<Outcome[]>} */
    async list() { return (await chrome.storage.session.get(storageKey))[storageKey] ?? []; }

    /** Removes an outcome that the user has seen. */
    dismiss(id) { return this.#change(all => all.filter(each => each.id !== id)); }

    #word(name, state) {
        const words = {
            [place.both]: 'outcomeBoth',
            [place.unclear]: 'outcomeUnclear',
            [place.lost]: 'outcomeLost',
        };
        return words[state] ? new HostError(words[state], name) : null;
    }

    /** Serialized: read, change and write must not interleave. */
    #change(changed) {
        return this.#changes.run(async () => {
            await chrome.storage.session.set({ [storageKey]: changed(await this.list()) });
            this.onListed(await this.list());
        }).catch(() => {});
    }
}
