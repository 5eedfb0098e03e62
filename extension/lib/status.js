// The connection's status and the last error, shown in the popup and as the button's badge.

import { HostError } from './hosterror.js';
import { access } from './siteaccess.js';

const marks = {
    problem: { text: '!', color: '#b3261e' },
    success: { text: '✓', color: '#1a6b2d' },
    keeping: { text: '→', color: '#51666a' },
    none: { text: '', color: '#51666a' },
};
const successShown = 4000;

export class Status {
    /** The error of the host, and of the last action. */
    #hostError = null;
    #error = null;
    #version = '';
    /** The access to sites, see siteaccess.js. */
    #access = access.all;
    #isKeeping = false;

    onChanged = _status => {};

    hostConnected(version) {
        this.#version = version;
        this.#hostError = null;
        this.#show();
    }

    hostDisconnected(error) {
        this.#version = '';
        this.#hostError = error;
        this.#show();
    }

    siteAccess(state) {
        this.#access = state;
        this.#show();
    }

    /** The user's last action failed. */
    failed(error) {
        this.#error = error;
        this.#show();
    }

    /** The user's last action succeeded, so earlier errors are cleared. */
    succeeded() { this.failed(null); }

    /** Shows for some seconds that a download was handed over. */
    flashSuccess() {
        this.#mark(marks.success);
        setTimeout(() => this.#show(), successShown);
    }

    /** Whether the next download is kept in the browser. */
    keeping(on) {
        this.#isKeeping = on;
        this.#show();
    }

    describe() {
        const needsAccess = this.#access === access.none;
        const error = this.#hostError ?? (needsAccess ? new HostError('problemSiteAccess') : this.#error);
        return { version: this.#version, problem: error && inWords(error), needsAccess };
    }

    get hostError() { return this.#hostError; }

    #show() {
        const current = this.describe();
        this.#mark(current.problem ? marks.problem : this.#isKeeping ? marks.keeping : marks.none);
        this.onChanged(current);
    }

    #mark({ text, color }) {
        chrome.action.setBadgeBackgroundColor({ color });
        chrome.action.setBadgeText({ text });
    }
}

/** The text for an error, whose message is a key of the extension's texts, or else the text itself. */
export function inWords(error) {
    return chrome.i18n.getMessage(error.message, error.detail).trim() || error.message;
}
