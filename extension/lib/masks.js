// Parses the lists of excluded file extensions and servers into the form that the host compares: masks
// separated by one space, with the wildcards "*" and "?".

const separators = /[\s,;]+/;

/**
 * @typedef {object} Understood
 * @property {string[]} masks as the host compares them, each once
 * @property {{entry: string, reason: string}[]} refused entries that can never match, and the key of the reason
 */

/** @returns {Understood} */
function understand(list, maskOf) {
    const masks = new Set();
    const refused = [];
    for (const entry of list.split(separators).filter(Boolean)) {
        const { mask, reason } = maskOf(entry);
        if (mask)
            masks.add(mask);
        else
            refused.push({ entry, reason });
    }
    return { masks: [...masks], refused };
}

const isEverything = mask => /^[*?.]*$/.test(mask);

/** File extensions: "zip", ".zip", "*.zip" and "ZIP" are the same. */
export function understandEndings(list) {
    return understand(list, entry => {
        const mask = entry.toLowerCase().replace(/^\*?\.+/, '');
        if (isEverything(mask))
            return { reason: 'refusedEverything' };
        if (mask.includes('.')) // only the text after the last dot of a name is compared
            return { reason: 'refusedInnerDot' };
        return /[\\/:"<>|]/.test(mask) ? { reason: 'refusedEnding' } : { mask };
    });
}

/** Servers: of URLs only the host name is used, and "*.example.com" is the same as "example.com". */
export function understandServers(list) {
    return understand(list, entry => {
        const host = entry.toLowerCase()
            .replace(/^[a-z][a-z0-9+.-]*:\/\//, '')
            .replace(/[/?#].*$/, '')
            .replace(/^.*@/, '');
        if (/^\[|:.*:/.test(host)) // the host compares names up to the first colon
            return { reason: 'refusedServerV6' };
        const mask = host.replace(/:\d*$/, '').replace(/^(\*\.|\.)+/, '').replace(/\.$/, '');
        if (isEverything(mask))
            return { reason: 'refusedEverything' };
        const ascii = /^[a-z0-9*?._-]+$/.test(mask) ? mask : asciiOf(mask);
        return ascii ? { mask: ascii } : { reason: 'refusedServer' };
    });
}

/** The ASCII form (Punycode) of an international host name; '' if it is invalid. */
function asciiOf(host) {
    try {
        const { hostname } = new URL(`http://${host}/`);
        return /^[a-z0-9._-]+$/.test(hostname) ? hostname : '';
    } catch {
        return '';
    }
}

/**
 * Whether a server or a parent domain of it is in a list; the same rule as the host's (wildcardmatch.h): a
 * "*" at the end of a mask stands for at least one character, elsewhere also for none.
 */
export function isServerIn(masks, host) {
    return host !== '' && masks.some(mask => {
        const pattern = mask.replace(/[.+^${}()|[\]\\]/g, '\\$&')
            .replace(/\*+$/, '.+').replace(/\*+/g, '.*').replace(/\?/g, '.');
        return new RegExp(`^(.*\\.)?${pattern}$`, 'i').test(host);
    });
}
