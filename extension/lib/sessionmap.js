// A Map that survives restarts of the background script, as long as the browser runs.

/** In milliseconds. Changes within this time are stored together. */
const saveDelay = 200;

export class SessionMap extends Map {
    #key;
    #isSaving = false;

    /** @param {string} key its key in chrome.storage.session */
    constructor(key) {
        super();
        this.#key = key;
    }

    async restore() {
        const stored = await chrome.storage.session.get(this.#key);
        for (const [key, value] of stored[this.#key] ?? [])
            super.set(key, value);
    }

    set(key, value) {
        super.set(key, value);
        this.#save();
        return this;
    }

    delete(key) {
        const wasThere = super.delete(key);
        if (wasThere)
            this.#save();
        return wasThere;
    }

    #save() {
        if (this.#isSaving)
            return;
        this.#isSaving = true;
        setTimeout(() => {
            this.#isSaving = false;
            // Without storage space, a restarted script begins with an older state.
            chrome.storage.session.set({ [this.#key]: [...this] }).catch(() => {});
        }, saveDelay);
    }
}
