// Errors with texts for the user.

/** The message is a key of the extension's texts; the detail is its placeholder's value. */
export class HostError extends Error {
    constructor(key, detail = '') {
        super(key);
        this.detail = detail;
    }
}
