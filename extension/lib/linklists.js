// The link lists of open pages for choosing links, kept as long as the browser runs.

const page = 'links.html';
const prefix = 'links.';
const maxKept = 5;

export class LinkLists {
    /** Opens the page with the links of a tab, next to that tab. */
    async open(links, { id, url, title, index, incognito }) {
        const keys = (await chrome.storage.session.getKeys?.() ?? Object.keys(await chrome.storage.session.get(null)))
            .filter(each => each.startsWith(prefix)).sort();
        await chrome.storage.session.remove(keys.slice(0, Math.max(0, keys.length - maxKept + 1)));
        const key = `${prefix}${Date.now()}`;
        await chrome.storage.session.set({ [key]: { links, title, documentUrl: url, tab: { id, url, incognito } } });
        await chrome.tabs.create({ url: `${chrome.runtime.getURL(page)}#${key}`, index: index + 1, openerTabId: id });
    }

    async get(key) { return (await chrome.storage.session.get(key))[key]; }
}
