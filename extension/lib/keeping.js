// Downloads that the user keeps in the browser: the next one, one whose link was clicked with a modifier
// key, and those from pages of excluded servers.

import { isServerIn } from './masks.js';

const storageKey = 'keepNext';

/** The host name of a URL, '' unless http(s). */
function hostOf(url) { return URL.canParse(url ?? '') && /^https?:/.test(url) ? new URL(url).hostname : ''; }

/** The masks of the servers whose downloads stay in the browser; as in the host, one may be empty, the list not. */
export function leftServers(settings) {
    const { skipServersEnabled, skipServers } = settings?.browser.monitor ?? {};
    return skipServersEnabled && skipServers ? skipServers.split(' ') : [];
}

export class Keeping {
    #preferences;
    #settings;
    #gestures;

    /** Called with the value of describe(). */
    onChanged = _state => {};

    constructor({ preferences, settings, gestures }) {
        this.#preferences = preferences;
        this.#settings = settings;
        this.#gestures = gestures;
    }

    async describe() {
        const commands = await chrome.commands?.getAll() ?? [];
        return {
            next: await this.#isNext(),
            shortcut: commands.find(each => each.name === 'keep-next')?.shortcut ?? '',
            modifier: (await this.#preferences.all())['keeping.modifier'],
        };
    }

    async keepNext(next) {
        await chrome.storage.session.set({ [storageKey]: next });
        this.onChanged(await this.describe());
    }

    /** For the keyboard shortcut: toggles. */
    async toggleNext() { await this.keepNext(!await this.#isNext()); }

    /** Whether a download that would be offered to the application stays in the browser. */
    async keeps(request) {
        if (await this.#isNext()) {
            await this.keepNext(false);
            return true;
        }
        const modifier = (await this.#preferences.all())['keeping.modifier'];
        return (modifier !== '' && this.#gestures.isHeld(request, modifier))
            || this.site(request.origin).isLeft;
    }

    /** Of a page's server: its host name, and whether its downloads stay in the browser. */
    site(url) {
        const host = hostOf(url);
        return { host, isLeft: isServerIn(leftServers(this.#settings.current), host) };
    }

    /** Stores whether they do. Returns what site() does. */
    async leaveSite(url, leave) {
        const { host } = this.site(url);
        const servers = leftServers(this.#settings.current).filter(mask => !isServerIn([mask], host));
        if (leave)
            servers.push(host);
        await this.#settings.change({
            'monitor.skipServers': servers.join(' '),
            'monitor.skipServersEnabled': servers.length > 0,
        });
        return this.site(url);
    }

    async #isNext() { return (await chrome.storage.session.get(storageKey))[storageKey] === true; }
}
