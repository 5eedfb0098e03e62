// A Map that a script which is started anew finds again, as long as the browser runs.

/** In milliseconds. Changes come in groups; those of one are stored at once. */
const saveDelay = 200;

export class SessionMap extends Map {
    #key;
    #isSaving = false;

    /** @param {string} key its name in the store */
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
            // Where there is no room for it, a script that is started anew has to look again.
            chrome.storage.session.set({ [this.#key]: [...this] }).catch(() => {});
        }, saveDelay);
    }
}
