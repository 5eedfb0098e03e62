// Errors of the host, with texts for the user.

/** The message is a key of the extension's texts; the detail is its placeholder's value. */
export class HostError extends Error {
    constructor(key, detail = '') {
        super(key);
        this.detail = detail;
    }
}

/** The host's error names and the keys of their texts. */
const knownErrors = {
    'app_not_installed': 'problemApplicationMissing',
    'invalid_parameter': 'problemAddressRefused',
    'invalid arguments': 'problemNothingToDownload',
    'no_media_found': 'problemNoMedia',
};

/** The error in the answer to a hand-over; null on success. */
export function errorOf({ error, result }) {
    if (!error)
        return result === '1' || result === '0' ? null : new HostError('problemApplicationUnclear');
    return new HostError(knownErrors[error] ?? 'problemApplicationFailed', error);
}
