// The entries of the context menu, with the host's captions in the user's language.

import { SerialQueue } from './serialqueue.js';

const webPages = ['http://*/*', 'https://*/*'];

const entries = [
    { id: 'dllink', contexts: ['link'], targetUrlPatterns: webPages }, // not for mailto:
    { id: 'dlselected', contexts: ['selection'] },
    { id: 'dlvideo', contexts: ['video', 'audio', 'frame', 'page'] },
    { id: 'dlall', contexts: ['page', 'link', 'selection'] },
];

const changes = new SerialQueue();

/**
 * Shows the entries that the settings allow; all of them while the settings are unknown.
 * @param {object} captions by the entries' ids
 * @param {object|undefined} allowed the settings' part on menus
 */
export function showMenus(captions, allowed) {
    // Serialized: concurrent changes would create entries twice.
    return changes.run(() => rebuild(captions, allowed));
}

async function rebuild(captions, allowed) {
    await chrome.contextMenus.removeAll();
    for (const { id, ...more } of entries) {
        if (!captions[id] || allowed?.[id] === false)
            continue;
        chrome.contextMenus.create({
            id,
            title: captions[id],
            documentUrlPatterns: webPages,
            ...more,
        }, () => void chrome.runtime.lastError);
    }
}
