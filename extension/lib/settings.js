// The options. Those on what is caught belong to the application, which tells of its changes and is
// told of the user's. The others only this extension has: it keeps them, and tells each new host.

import { HostError } from './hosterror.js';

const kept = 'options';
const isOwn = path => /^(menu|monitor\.video)\./.test(path);

export class Settings {
    /** The record of all options, null until the host has answered. */
    current = null;
    /** What keeps the host from storing the options: 'busy', 'failure', or '' when nothing does. */
    store = '';
    onChanged = _settings => {};
    /** The host has told the record, asked or not. */
    onTold = () => {};
    onStoreChanged = _store => {};

    #host;
    /** The extension's own options that were changed, by their paths. */
    #own = {};
    #restored = null;
    /** Counts what the host told. */
    #told = 0;
    #lastChange = Promise.resolve();

    constructor(host) { this.#host = host; }

    /**
     * What the user changed of the extension's own options: the record's "browser" with nothing else
     * in it. It holds before the application has answered, too.
     */
    async own() {
        await this.#restore();
        return changed({ browser: { menu: {}, monitor: { video: {} } } }, this.#own).browser;
    }

    /** Resolves once the application has answered, which may take as long as it takes to start. */
    async query() {
        await this.#restore();
        this.accept(await this.#host.ask('query_settings'));
        if (Object.keys(this.#own).length > 0)
            await this.change({});
    }

    /** Takes the record of an answer, or of a message that the host sent by itself. */
    accept(message) {
        ++this.#told;
        this.#hold(message.settings);
        this.onTold();
    }

    /** Takes a message of the host on whether it can store the options. */
    acceptStore({ error }) {
        this.store = error;
        this.onStoreChanged(error);
    }

    /**
     * Stores changed options.
     * @param {object} changes values by paths in the record's "browser", such as "monitor.enable"; the
     *     host's record tells which there are
     */
    change(changes) {
        const mine = this.#lastChange.then(() => this.#post(changes));
        this.#lastChange = mine.catch(() => {});
        return mine;
    }

    forget() {
        this.current = null;
        this.store = '';
    }

    #restore() {
        this.#restored ??= chrome.storage.local.get(kept).then(stored => { this.#own = stored[kept] ?? {}; });
        return this.#restored;
    }

    async #post(changes) {
        await this.#restore(); // or what is stored now would replace what was stored before
        const unknown = this.current && Object.keys(changes).find(path => valueAt(this.current.browser, path) === undefined);
        if (unknown)
            throw new HostError('problemOptionUnknown', unknown);
        const own = Object.entries(changes).filter(([path]) => isOwn(path));
        if (own.length > 0) {
            this.#own = { ...this.#own, ...Object.fromEntries(own) };
            await chrome.storage.local.set({ [kept]: this.#own });
        }
        let settings;
        let told;
        do {
            if (!this.current)
                throw new HostError('optionsWaiting');
            told = this.#told;
            // The host takes defaults for what a record leaves out, so it gets the whole.
            settings = changed(this.current, { ...this.#own, ...changes });
            const answer = await this.#host.ask('post_settings', { post_settings: settings });
            if (answer.error)
                throw new HostError('problemOptionsRefused', answer.error);
            // What the host told before this answer was undone by what it read then.
        } while (told !== this.#told);
        this.#hold(settings);
    }

    #hold(settings) {
        this.current = changed(settings, this.#own);
        this.onChanged(this.current);
    }
}

/** The option at a path in the record's "browser"; undefined when there is none. */
export function valueAt(browser, path) {
    return path.split('.').reduce((part, name) => (part && Object.hasOwn(part, name) ? part[name] : undefined), browser);
}

function changed(settings, changes) {
    const record = structuredClone(settings);
    for (const [path, value] of Object.entries(changes)) {
        const names = path.split('.');
        const last = names.pop();
        names.reduce((part, name) => part[name], record.browser)[last] = value;
    }
    return record;
}
