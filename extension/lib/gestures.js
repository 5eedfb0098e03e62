// What the user did last in each tab, as the script in its pages says: whether it was something that
// asks the browser itself to save what it is done to, and which keys were held.

const modifiers = ['alt', 'ctrl', 'shift'];

/** Knows nothing of a tab in which no script runs, or did before this one was started. */
export class Gestures {
    #byTab = new Map();
    /** The tabs that were opened from others, by their ids. */
    #openers = new Map();

    /** To be called at once when the script starts. */
    listen() {
        chrome.tabs.onCreated.addListener(({ id, openerTabId }) => {
            if (openerTabId !== undefined)
                this.#openers.set(id, openerTabId);
        });
        chrome.tabs.onRemoved.addListener(tabId => {
            this.#byTab.delete(tabId);
            // A tab that was opened for a download is gone before the download is told of.
            setTimeout(() => this.#openers.delete(tabId), 60_000);
        });
    }

    /** Takes a message of a page's script. Returns whether it is one. */
    take(message, { id, tab }) {
        if (id !== chrome.runtime.id || !tab || typeof message?.saves !== 'boolean')
            return false;
        this.#byTab.set(tab.id, {
            saves: message.saves,
            held: modifiers.filter(each => message[each] === true),
        });
        return true;
    }

    /** Whether the browser was asked to save; undefined when that is not known. */
    savesItself(tabId) { return this.#byTab.get(tabId)?.saves; }

    /** Whether a key was held in the tab, or in that from which it was opened. */
    isHeld(tabId, modifier) {
        const gesture = this.#byTab.get(tabId) ?? this.#byTab.get(this.#openers.get(tabId));
        return gesture?.held.includes(modifier) ?? false;
    }
}
