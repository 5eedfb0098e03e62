// What the user keeps in the browser: the next download, one whose link was clicked while a key was
// held, and whatever comes from a page of a server that is left to the browser.

import { isServerIn } from './masks.js';

const kept = 'keepNext';

/** The server of an address, '' for one that is none of the web. */
export function hostOf(url) { return URL.canParse(url ?? '') && /^https?:/.test(url) ? new URL(url).hostname : ''; }

/** The servers that the settings leave to the browser. */
export function leftServers(settings) {
    const { skipServersEnabled, skipServers } = settings?.browser.monitor ?? {};
    return skipServersEnabled ? skipServers.split(' ').filter(Boolean) : [];
}

export class Keeping {
    #preferences;
    #settings;
    #gestures;

    /** Called with what describe() resolves with. */
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
        await chrome.storage.session.set({ [kept]: next });
        this.onChanged(await this.describe());
    }

    /** The same for a shortcut, which takes back what it did when it is pressed again. */
    async toggleNext() { await this.keepNext(!await this.#isNext()); }

    /** Whether a download stays in the browser that would be offered to the application else. */
    async keeps(request) {
        if (await this.#isNext()) {
            await this.keepNext(false);
            return true;
        }
        const modifier = (await this.#preferences.all())['keeping.modifier'];
        return (modifier !== '' && this.#gestures.isHeld(request, modifier))
            || isServerIn(leftServers(this.#settings.current), hostOf(request.origin));
    }

    async #isNext() { return (await chrome.storage.session.get(kept))[kept] === true; }
}
