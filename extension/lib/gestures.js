// What the user did lately in each tab, as the script in its pages says: whether it was something that
// asks the browser itself to save what it is done to, and which keys were held. A download is told of
// when its server answers, and the user may have done something else by then.

const modifiers = ['alt', 'ctrl', 'shift'];

/** In a tab. */
const mostRemembered = 20;

/** Has no entry for tabs whose content script has not reported since this script started. */
export class Gestures {
    /** The latest last. */
    #byTab = new Map();
    /** The opener of each tab, by tab id. */
    #openers = new Map();

    /** To be called at once when the script starts. */
    listen() {
        chrome.tabs.onCreated.addListener(({ id, openerTabId }) => {
            if (openerTabId !== undefined)
                this.#openers.set(id, openerTabId);
        });
        chrome.tabs.onRemoved.addListener(tabId => {
            this.#byTab.delete(tabId);
            // A tab that was opened for a download is closed before the download is reported.
            setTimeout(() => this.#openers.delete(tabId), 60_000);
        });
    }

    /** Handles a message of a content script. Returns whether it is one. */
    take(message, { id, tab }) {
        if (id !== chrome.runtime.id || !tab || typeof message?.saves !== 'boolean')
            return false;
        const gesture = {
            time: message.time,
            saves: message.saves,
            held: modifiers.filter(each => message[each] === true),
        };
        this.#byTab.set(tab.id, [...this.#byTab.get(tab.id) ?? [], gesture].slice(-mostRemembered));
        return true;
    }

    /** Whether the browser was asked to save what a request asks for; undefined when that is not known. */
    savesItself({ tabId, began }) { return this.#before(tabId, began)?.saves; }

    /** Whether a key was held in the tab of a request, or in that from which it was opened. */
    isHeld({ tabId, began }, modifier) {
        const gesture = this.#before(tabId, began) ?? this.#before(this.#openers.get(tabId), began);
        return gesture?.held.includes(modifier) ?? false;
    }

    #before(tabId, time) { return this.#byTab.get(tabId)?.findLast(each => each.time <= time); }
}
