// What became of each download that was handed over, or was to be: the one place that tells.

import { HostError } from './hosterror.js';

const kept = 'outcomes';
const mostKept = 20;

/** Where a file is afterwards. */
export const place = {
    application: 'application',
    browser: 'browser',
    /** Complete in the browser before the application took it. */
    both: 'both',
    /** The application was asked and never answered; the browser has it. */
    unclear: 'unclear',
    /** The user declined it. */
    nowhere: 'nowhere',
    /** It could not be had. */
    lost: 'lost',
};

/** @typedef {{name: string, state: string, reason: string, time: number}} Outcome without addresses */

export class Outcomes {
    /** Called with the new outcome, and with the error that tells of it; null when all is as wished. */
    onTold = (_outcome, _error) => {};

    #last = Promise.resolve();

    /** @param {Error|null} error what kept the file from where the user wanted it */
    tell(name, state, error = null) {
        const told = error ?? this.#word(name, state);
        const outcome = { name, state, reason: told?.message ?? '', time: Date.now() };
        this.#last = this.#last.then(() => this.#keep(outcome)).catch(() => {});
        this.onTold(outcome, told);
    }

    /** The latest last. @returns {Promise<Outcome[]>} */
    async list() { return (await chrome.storage.session.get(kept))[kept] ?? []; }

    #word(name, state) {
        const words = {
            [place.both]: 'outcomeBoth',
            [place.unclear]: 'outcomeUnclear',
            [place.lost]: 'outcomeLost',
        };
        return words[state] ? new HostError(words[state], name) : null;
    }

    async #keep(outcome) {
        await chrome.storage.session.set({ [kept]: [...await this.list(), outcome].slice(-mostKept) });
    }
}
