// The options of the host's settings record. Those on capturing belong to the application and are synced
// with it. The others belong to this extension, which stores them and posts them to each new host.

import { HostError } from './hosterror.js';
import { SerialQueue } from './serialqueue.js';

const storageKey = 'options';
const isOwn = path => /^(menu|monitor\.video)\./.test(path);

export class Settings {
    /** The record of all options, null until the host has answered. */
    current = null;
    /** Why the host cannot store the options: 'busy', 'failure', or '' when it can. */
    store = '';
    onChanged = _settings => {};
    /** Called whenever the host has sent the record. */
    onReceived = () => {};
    onStoreChanged = _store => {};

    #host;
    /** The extension's own options that the user changed, by path. */
    #own = {};
    #restored = null;
    /** Counts the records that the host has sent. */
    #received = 0;
    #changes = new SerialQueue();

    constructor(host) { this.#host = host; }

    /**
     * The extension's own options that the user changed, as the record's "browser" with nothing else in
     * it. Available before the application has answered.
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

    /** Takes the record of an answer or a notification. */
    accept(message) {
        ++this.#received;
        this.#hold(message.settings);
        this.onReceived();
    }

    /** Takes a notification on whether the host can store the options. */
    acceptStore({ error }) {
        this.store = error;
        this.onStoreChanged(error);
    }

    /**
     * Stores changed options.
     * @param {object} changes values by paths in the record's "browser", such as "monitor.enable"; the
     *     paths must exist in the host's record
     */
    change(changes) { return this.#changes.run(() => this.#post(changes)); }

    forget() {
        this.current = null;
        this.store = '';
    }

    #restore() {
        this.#restored ??= chrome.storage.local.get(storageKey).then(stored => { this.#own = stored[storageKey] ?? {}; });
        return this.#restored;
    }

    async #post(changes) {
        await this.#restore(); // first, or the stored options would be overwritten
        const unknown = this.current && Object.keys(changes).find(path => valueAt(this.current.browser, path) === undefined);
        if (unknown)
            throw new HostError('problemOptionUnknown', unknown);
        const own = Object.entries(changes).filter(([path]) => isOwn(path));
        if (own.length > 0) {
            this.#own = { ...this.#own, ...Object.fromEntries(own) };
            await chrome.storage.local.set({ [storageKey]: this.#own });
        }
        let settings;
        let received;
        do {
            if (!this.current)
                throw new HostError('optionsWaiting');
            received = this.#received;
            // The host takes defaults for missing members, so it gets the whole record.
            settings = changed(this.current, { ...this.#own, ...changes });
            const answer = await this.#host.ask('post_settings', { post_settings: settings });
            if (answer.error)
                throw new HostError('problemOptionsRefused', answer.error);
            // A change that the host sent before this answer was overwritten by this post.
        } while (received !== this.#received);
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
