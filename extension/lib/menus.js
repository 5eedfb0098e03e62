// The entries of the context menus, with the captions that the host gives in the user's language.

const webPages = ['http://*/*', 'https://*/*'];

const entries = [
    { id: 'dllink', contexts: ['link'], targetUrlPatterns: webPages }, // there is nothing to get from mailto:
    { id: 'dlselected', contexts: ['selection'] },
    { id: 'dlvideo', contexts: ['video', 'audio', 'frame', 'page'] },
    { id: 'dlall', contexts: ['page', 'link', 'selection'] },
];

const serializer = { last: Promise.resolve() };

/**
 * Shows the entries that the settings allow; all of them while the settings are not known.
 * @param {object} captions by the entries' ids
 * @param {object|undefined} allowed the settings' part on menus
 */
export function showMenus(captions, allowed) {
    // Two changes at once would each find the other's entries in their way.
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
