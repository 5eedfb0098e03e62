// What the host refuses or cannot do, as errors that can be told in words.

/** Its message is a key of the extension's texts, into which the detail is put. */
export class HostError extends Error {
    constructor(key, detail = '') {
        super(key);
        this.detail = detail;
    }
}

/** Errors that the host names, and the texts that tell a user of them. */
const knownErrors = {
    'app_not_installed': 'problemApplicationMissing',
    'invalid_parameter': 'problemAddressRefused',
    'invalid arguments': 'problemNothingToDownload',
    'no_media_found': 'problemNoMedia',
};

/** What an answer says went wrong when downloads were handed over; null when nothing did. */
export function errorOf({ error, result }) {
    if (!error)
        return result === '1' || result === '0' ? null : new HostError('problemApplicationUnclear');
    return new HostError(knownErrors[error] ?? 'problemApplicationFailed', error);
}
