// The browser's downloads that are being handed over. They are stored, so that after the end of this
// script or of the browser the next start can complete them.

import { SerialQueue } from './serialqueue.js';

const storageKey = 'handovers';
const run = 'browserRun';

/** The stages of a hand-over. */
export const stage = {
    /** Paused; the application has not been asked. */
    paused: 'paused',
    offered: 'offered',
    /** The application has it, and the browser still has it, too. */
    taken: 'taken',
};

/** Download ids change when the browser starts. */
const keyOf = ({ url, startTime }) => `${startTime} ${url}`;

export class Handovers {
    /** By key, as { url, startTime, name, canRestart, stage, run }. */
    #all = new Map();
    #restored = null;
    /** The id of this run of the browser. */
    #run = '';
    #writes = new SerialQueue();

    /** To be called at once when the script starts. Resolves with the interrupted hand-overs. */
    restore() {
        this.#restored = this.#read();
        return this.#restored;
    }

    /** @param {boolean} canRestart whether the browser may request it again */
    async begin(item, canRestart) {
        await this.#restored;
        const { url, startTime } = item;
        this.#all.set(keyOf(item), { url, startTime, name: '', canRestart, stage: stage.paused, run: this.#run });
        await this.#write();
    }

    async reach(reached, item, name) {
        const known = this.#all.get(keyOf(item));
        if (known) {
            Object.assign(known, { stage: reached, name });
            await this.#write();
        }
    }

    /** Whether the browser has ended since one began. */
    isOfEarlierRun(left) { return left.run !== this.#run; }

    async drop(item) {
        await this.#restored;
        if (this.#all.delete(keyOf(item)))
            await this.#write();
    }

    async #read() {
        this.#run = (await chrome.storage.session.get(run))[run] ?? crypto.randomUUID();
        await chrome.storage.session.set({ [run]: this.#run });
        const stored = (await chrome.storage.local.get(storageKey))[storageKey] ?? [];
        this.#all = new Map(stored.map(each => [keyOf(each), each]));
        return stored;
    }

    /** One write at a time, or an older state could be written last. */
    #write() {
        // If the script is ended meanwhile, this alarm restarts it at the latest.
        if (this.#all.size > 0)
            chrome.alarms.create(storageKey, { periodInMinutes: 0.5 });
        else
            chrome.alarms.clear(storageKey);
        const all = [...this.#all.values()];
        return this.#writes.run(() => chrome.storage.local.set({ [storageKey]: all })).catch(() => {});
    }
}
