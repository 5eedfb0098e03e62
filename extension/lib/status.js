// What works and what does not, in words: shown by the popup, and by a mark on the button.

export class Status {
    #problem = null;
    #version = '';

    onChanged = _status => {};

    hostConnected(version) {
        this.#version = version;
        this.#show(null);
    }

    hostDisconnected(error) {
        this.#version = '';
        this.failed(error);
    }

    /** Something the user asked for could not be done. */
    failed(error) { this.#show(inWords(error)); }

    /** What the user asked for was done, so whatever was wrong is no longer. */
    succeeded() { this.#show(null); }

    describe() { return { version: this.#version, problem: this.#problem }; }

    #show(problem) {
        this.#problem = problem;
        chrome.action.setBadgeBackgroundColor({ color: '#c62828' });
        chrome.action.setBadgeText({ text: problem ? '!' : '' });
        this.onChanged(this.describe());
    }
}

/** The text of an error whose message is a key of the extension's texts; else the message itself. */
export function inWords(error) {
    return chrome.i18n.getMessage(error.message, error.detail) || error.message;
}
