// What works and what does not, in words: shown by the popup, and by a mark on the button.

export class Status {
    /** What is wrong with the host, and with what was done last. */
    #hostProblem = null;
    #problem = null;
    #version = '';

    onChanged = _status => {};

    hostConnected(version) {
        this.#version = version;
        this.#hostProblem = null;
        this.#show();
    }

    hostDisconnected(error) {
        this.#version = '';
        this.#hostProblem = inWords(error);
        this.#show();
    }

    /** Something the user asked for could not be done. */
    failed(error) {
        this.#problem = inWords(error);
        this.#show();
    }

    /** What the user asked for was done, so whatever was wrong is no longer. */
    succeeded() {
        this.#problem = null;
        this.#show();
    }

    describe() { return { version: this.#version, problem: this.#hostProblem ?? this.#problem }; }

    #show() {
        const current = this.describe();
        chrome.action.setBadgeBackgroundColor({ color: '#c62828' });
        chrome.action.setBadgeText({ text: current.problem ? '!' : '' });
        this.onChanged(current);
    }
}

/** The text of an error whose message is a key of the extension's texts; else the message itself. */
export function inWords(error) {
    return chrome.i18n.getMessage(error.message, error.detail) || error.message;
}
