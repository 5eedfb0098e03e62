// The entries of the context menu, with the host's captions in the user's language.

const webPages = ['http://*/*', 'https://*/*'];

const entries = [
    { id: 'dllink', contexts: ['link'], targetUrlPatterns: webPages }, // not for mailto:
    { id: 'dlselected', contexts: ['selection'] },
    { id: 'dlvideo', contexts: ['video', 'audio', 'frame', 'page'] },
    { id: 'dlall', contexts: ['page', 'link', 'selection'] },
];

const serializer = { last: Promise.resolve() };

/**
 * Shows the entries that the settings allow; all of them while the settings are unknown.
 * @param {object} captions by the entries' ids
 * @param {object|undefined} allowed the settings' part on menus
 */
export function showMenus(captions, allowed) {
    // Serialized: concurrent changes would create entries twice.
    serializer.last = serializer.last.then(() => rebuild(captions, allowed));
    return serializer.last;
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
