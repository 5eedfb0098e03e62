// The extension's own options, which are not part of the settings record.

const storageKey = 'preferences';
const defaults = {
    'keeping.modifier': 'alt',
    'notify.badge': true,
    'notify.failures': true,
    'notify.successes': false,
};

export function isPreference(path) { return Object.hasOwn(defaults, path); }

export class Preferences {
    /** Called with all of them, by their paths. */
    onChanged = _values => {};

    #values = { ...defaults };
    #restored = null;

    /** Resolves with all of them, by their paths. */
    async all() {
        this.#restored ??= chrome.storage.local.get(storageKey).then(stored => Object.assign(this.#values, stored[storageKey]));
        await this.#restored;
        return this.#values;
    }

    /** @param {object} changes values by paths, such as "notify.badge" */
    async change(changes) {
        Object.assign(await this.all(), changes);
        await chrome.storage.local.set({ [storageKey]: this.#values });
        this.onChanged(this.#values);
    }
}
