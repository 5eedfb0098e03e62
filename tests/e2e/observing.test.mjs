// Which tabs the extension observes, and which events it listens to, in a fake browser: private windows
// are not available in all browsers of the other tests.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { cpSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';

class BrowserEvent {
    listeners = new Set();
    addListener(listener) { this.listeners.add(listener); }
    removeListener(listener) { this.listeners.delete(listener); }
    fire(...told) { this.listeners.forEach(listener => listener(...told)); }
}

const eventNames = {
    webRequest: ['onSendHeaders', 'onBeforeRedirect', 'onResponseStarted', 'onCompleted', 'onErrorOccurred'],
    webNavigation: ['onCommitted', 'onHistoryStateUpdated'],
    tabs: ['onRemoved'],
    downloads: ['onCreated', 'onChanged', 'onErased'],
};
const events = Object.fromEntries(Object.entries(eventNames).map(([api, names]) =>
    [api, Object.fromEntries(names.map(name => [name, new BrowserEvent()]))]));
const listening = () => Object.values(events).flatMap(Object.values).filter(event => event.listeners.size > 0).length;

const tabs = [{ id: 1, url: 'http://page/', incognito: false }, { id: 2, url: 'http://private/', incognito: true }];
globalThis.chrome = {
    ...events,
    tabs: { ...events.tabs, query: async () => tabs, get: async id => tabs.find(tab => tab.id === id) },
    downloads: { ...events.downloads, search: async () => [] },
    storage: { session: { get: async () => ({}), set: async () => {} } },
};

// Node.js would not load these files as modules at their place.
const folder = mkdtempSync(join(tmpdir(), 'kov-observing-'));
after(() => rmSync(folder, { recursive: true }));
cpSync(fileURLToPath(new URL('../../extension/lib', import.meta.url)), folder, { recursive: true });
writeFileSync(join(folder, 'package.json'), '{"type": "module"}');
const load = async name => (await import(join(folder, `${name.toLowerCase()}.js`)))[name];

test('private tabs are not observed; without observed tabs there are no listeners', async () => {
    let told = [];
    const host = { tell: (type, members) => told.push(members[type]) };
    const notifications = new (await load('RequestNotifications'))(host);
    const pages = new (await load('Pages'))(notifications);
    const requests = new (await load('PageRequests'))(notifications, pages);
    const media = new (await load('FoundMedia'))(notifications, pages, requests);
    const observer = new (await load('Observer'))(
        notifications, pages, requests, media, new (await load('DownloadReports'))(host));
    const total = Object.values(eventNames).flat().length;

    let lastId = 0;
    /** The host's notifications when a tab requests something, and the browser downloads it. */
    async function toldOf(tabId, incognito) {
        told = [];
        const id = ++lastId;
        const details = { requestId: `${id}`, tabId, frameId: 0, url: `http://host/${id}`, method: 'GET' };
        events.webRequest.onSendHeaders.fire({ ...details, requestHeaders: [] });
        events.webRequest.onCompleted.fire(details);
        events.downloads.onCreated.fire({ id, incognito, url: details.url, state: 'in_progress' });
        await observer.observeEverywhere(true); // all earlier events have been handled then
        return told.map(each => each.type ?? each.state).sort();
    }

    observer.listen();
    strictEqual(listening(), total, 'what the script was started for would be missed');
    await observer.observeEverywhere(false);
    strictEqual(listening(), 0);

    await observer.observeEverywhere(true);
    deepStrictEqual(told.map(each => each.data), ['http://page/']);
    deepStrictEqual(await toldOf(1, false), ['completed', 'in_progress', 'request']);
    deepStrictEqual(await toldOf(2, true), []);
    await observer.observe(2); // the user asks for it
    deepStrictEqual(await toldOf(2, true), ['completed', 'request']);

    // No page can make the script grow by long URLs.
    told = [];
    events.webNavigation.onHistoryStateUpdated.fire({ tabId: 1, frameId: 0, url: `http://page/${'x'.repeat(1e6)}` });
    await observer.announce();
    ok(JSON.stringify(told).length < 1000);

    await observer.observeEverywhere(false);
    events.tabs.onRemoved.fire(2);
    await observer.observeEverywhere(false);
    strictEqual(listening(), 0);
});
