// What works and what does not, in words: shown by the popup, and by a mark on the button.

/** After so long without the application's settings it is said that the application is missing. */
const applicationPatience = 5000;

export class Status {
    #problem = null;
    #version = '';
    #applicationAnswers = false;
    #applicationTimer = 0;

    onChanged = _status => {};

    /** The host answered; the application behind it has still to. */
    hostConnected(version) {
        this.#version = version;
        this.#applicationAnswers = false;
        this.#show(null);
        clearTimeout(this.#applicationTimer);
        this.#applicationTimer = setTimeout(() => {
            if (!this.#applicationAnswers)
                this.#show(chrome.i18n.getMessage('problemApplicationSilent'));
        }, applicationPatience);
    }

    applicationAnswered() {
        this.#applicationAnswers = true;
        clearTimeout(this.#applicationTimer);
        this.#show(null);
    }

    hostDisconnected(error) {
        this.#version = '';
        this.#applicationAnswers = false;
        clearTimeout(this.#applicationTimer);
        this.failed(error);
    }

    /** Something the user asked for could not be done. */
    failed(error) { this.#show(chrome.i18n.getMessage(error.message, error.detail) || error.message); }

    describe() {
        return {
            version: this.#version,
            applicationAnswers: this.#applicationAnswers,
            problem: this.#problem,
        };
    }

    #show(problem) {
        this.#problem = problem;
        chrome.action.setBadgeBackgroundColor({ color: '#c62828' });
        chrome.action.setBadgeText({ text: problem ? '!' : '' });
        this.onChanged(this.describe());
    }
}
