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

/**
 * @typedef {object} Outcome without addresses
 * @property {string} id
 * @property {string} name of the file
 * @property {string} state one of the places
 * @property {string} reason what went wrong, the key of a text or the application's words; '' for nothing
 * @property {string} detail what is put into that text
 * @property {number} time in milliseconds since 1970
 */

export class Outcomes {
    /** Called with the new outcome, and with the error that tells of it; null when all is as wished. */
    onTold = (_outcome, _error) => {};
    /** Called with the whole list when it changed. */
    onListed = _outcomes => {};

    #last = Promise.resolve();

    /** @param {Error|null} error what kept the file from where the user wanted it */
    tell(name, state, error = null) {
        const told = error ?? this.#word(name, state);
        const outcome = {
            id: crypto.randomUUID(),
            name,
            state,
            reason: told?.message ?? '',
            detail: told?.detail ?? '',
            time: Date.now(),
        };
        this.#change(all => [...all, outcome].slice(-mostKept));
        this.onTold(outcome, told);
    }

    /** The latest last. @returns {Promise<Outcome[]>} */
    async list() { return (await chrome.storage.session.get(kept))[kept] ?? []; }

    /** The user has seen it. */
    dismiss(id) { return this.#change(all => all.filter(each => each.id !== id)); }

    #word(name, state) {
        const words = {
            [place.both]: 'outcomeBoth',
            [place.unclear]: 'outcomeUnclear',
            [place.lost]: 'outcomeLost',
        };
        return words[state] ? new HostError(words[state], name) : null;
    }

    /** One at a time, or one would undo the other. */
    #change(changed) {
        this.#last = this.#last.then(async () => {
            await chrome.storage.session.set({ [kept]: changed(await this.list()) });
            this.onListed(await this.list());
        }).catch(() => {});
        return this.#last;
    }
}
