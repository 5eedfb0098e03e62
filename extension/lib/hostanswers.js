// What the host's answers say about downloads.

import { HostError } from './hosterror.js';
import { connectionFailures } from './hosttexts.js'; // made by the build

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
    // The host says this one in its user's language, which need not be the browser's.
    if (connectionFailures.includes(error))
        return new HostError('problemApplicationUnreached');
    return new HostError(knownErrors[error] ?? 'problemApplicationFailed', error);
}
