// The lists of the options on what is left to the browser, as a user writes them and as the host
// compares them: masks with one space between, "*" for any characters and "?" for one.

const separators = /[\s,;]+/;

/**
 * @typedef {object} Understood
 * @property {string[]} masks as the host compares them, each once
 * @property {{entry: string, reason: string}[]} refused what can never match, and the key of the text why
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

/** Endings of names: "zip", ".zip", "*.zip" and "ZIP" are the same. */
export function understandEndings(list) {
    return understand(list, entry => {
        const mask = entry.toLowerCase().replace(/^\*?\.+/, '');
        if (isEverything(mask))
            return { reason: 'refusedEverything' };
        if (mask.includes('.')) // what stands after the last dot of a name is compared
            return { reason: 'refusedInnerDot' };
        return /[\\/:"<>|]/.test(mask) ? { reason: 'refusedEnding' } : { mask };
    });
}

/** Servers: whole addresses count as the server in them, and "*.example.com" as "example.com". */
export function understandServers(list) {
    return understand(list, entry => {
        const host = entry.toLowerCase()
            .replace(/^[a-z][a-z0-9+.-]*:\/\//, '')
            .replace(/[/?#].*$/, '')
            .replace(/^.*@/, '');
        if (/^\[|:.*:/.test(host)) // colons end the name of a server where it is compared
            return { reason: 'refusedServerV6' };
        const mask = host.replace(/:\d*$/, '').replace(/^(\*\.|\.)+/, '').replace(/\.$/, '');
        if (isEverything(mask))
            return { reason: 'refusedEverything' };
        const ascii = /^[a-z0-9*?._-]+$/.test(mask) ? mask : asciiOf(mask);
        return ascii ? { mask: ascii } : { reason: 'refusedServer' };
    });
}

/** The name under which a server with other letters than Latin ones is asked; '' for none. */
function asciiOf(host) {
    try {
        const { hostname } = new URL(`http://${host}/`);
        return /^[a-z0-9._-]+$/.test(hostname) ? hostname : '';
    } catch {
        return '';
    }
}

/** Whether a server stands in a list, by itself or below another; as the host decides it. */
export function isServerIn(masks, host) {
    return masks.some(mask => {
        const pattern = mask.replace(/[.+^${}()|[\]\\]/g, '\\$&').replace(/\*/g, '.+').replace(/\?/g, '.');
        return new RegExp(`^(.+\\.)?${pattern}$`, 'i').test(host);
    });
}
