// The user's recent gestures in each tab, as reported by the content script: whether a gesture may ask
// the browser itself to save its target, and which keys were held. Several are kept, since a download is
// reported only when its server responds, and by then there may have been other gestures.

import { Listeners } from './listeners.js';

/** The keys that may keep a download in the browser, as content/gestures.js names them. */
export const modifiers = ['alt', 'ctrl', 'shift'];

/** Per tab. */
const maxRemembered = 20;

/** Has no entry for tabs whose content script has not reported since this script started. */
export class Gestures {
    /** The latest last. */
    #byTab = new Map();
    /** The opener of each tab, by tab id. */
    #openers = new Map();

    #listeners = new Listeners([
        [chrome.tabs.onCreated, ({ id, openerTabId }) => {
            if (openerTabId !== undefined)
                this.#openers.set(id, openerTabId);
        }],
        [chrome.tabs.onRemoved, tabId => {
            this.#byTab.delete(tabId);
            // A tab that was opened for a download is closed before the download is reported.
            setTimeout(() => this.#openers.delete(tabId), 60_000);
        }],
    ]);

    /** To be switched on at once when the script starts. */
    setListening(on) {
        this.#listeners.set(on);
        if (!on)
            this.#byTab.clear();
    }

    /** Handles a message of a content script. Returns whether it is one. */
    take(message, { id, tab }) {
        if (id !== chrome.runtime.id || !tab || typeof message?.saves !== 'boolean')
            return false;
        if (!this.#listeners.areOn)
            return true;
        const gesture = {
            time: message.time,
            saves: message.saves,
            held: modifiers.filter(each => message[each] === true),
        };
        this.#byTab.set(tab.id, [...this.#byTab.get(tab.id) ?? [], gesture].slice(-maxRemembered));
        return true;
    }

    /** Whether the user asked the browser itself to save the target of a request; undefined if unknown. */
    savesItself({ tabId, began }) { return this.#before(tabId, began)?.saves; }

    /** Whether a key was held in the tab of a request, or in its opener. */
    isHeld({ tabId, began }, modifier) {
        const gesture = this.#before(tabId, began) ?? this.#before(this.#openers.get(tabId), began);
        return gesture?.held.includes(modifier) ?? false;
    }

    #before(tabId, time) { return this.#byTab.get(tabId)?.findLast(each => each.time <= time); }
}
