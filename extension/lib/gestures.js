// What the user did last in each tab, as the script in its pages says: whether it was something that
// asks the browser itself to save what it is done to.

/** Knows nothing of a tab in which no script runs, or did before this one was started. */
export class Gestures {
    #byTab = new Map();

    /** To be called at once when the script starts. */
    listen() {
        chrome.tabs.onRemoved.addListener(tabId => this.#byTab.delete(tabId));
    }

    /** Takes a message of a page's script. Returns whether it is one. */
    take(message, { id, tab }) {
        if (id !== chrome.runtime.id || !tab || typeof message !== 'boolean')
            return false;
        this.#byTab.set(tab.id, message);
        return true;
    }

    /** Whether the browser was asked to save; undefined when that is not known. */
    savesItself(tabId) { return this.#byTab.get(tabId); }
}
