// The extension's own rules, without a browser: parsing the lists of the options, guesses from URLs of
// links, and detecting that the browser has asked the user where to save.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { readFileSync } from 'node:fs';
import { mock, test } from 'node:test';
import { leftServers } from '../../extension/lib/keeping.js';
import { LinkKinds, nameOf, seemsToAct } from '../../extension/lib/links.js';
import { isServerIn, understandEndings, understandServers } from '../../extension/lib/masks.js';
import { applicationTimeoutMs } from '../../extension/lib/nativehost.js';

/** Rows that the native host's unit tests read as well. */
const shared = path => JSON.parse(readFileSync(new URL(`../${path}`, import.meta.url)));

const kinds = new LinkKinds(shared('../extension/lib/filetypes.json'));

const lists = [
    [understandEndings, 'zip, .ZIP;*.zip\n..rar tmp*', 'zip rar tmp*', []],
    [understandEndings, '* .? tar.gz a/b z?p', 'z?p',
     ['*: refusedEverything', '.?: refusedEverything', 'tar.gz: refusedInnerDot', 'a/b: refusedEnding']],
    [understandServers, 'https://user@Example.com:8080/a?b#c\n*.example.com, www.example.org.', 'example.com www.example.org', []],
    [understandServers, 'bücher.example, 192.168.0.1 cdn-*.example.net', 'xn--bcher-kva.example 192.168.0.1 cdn-*.example.net', []],
    [understandServers, '[::1] ::1 *.* a^b', '',
     ['[::1]: refusedServerV6', '::1: refusedServerV6', '*.*: refusedEverything', 'a^b: refusedServer']],
];

test('lists of masks are normalized, and entries that can never match refused', () => {
    for (const [understand, written, masks, refusals] of lists) {
        const { masks: found, refused } = understand(written);
        strictEqual(found.join(' '), masks, written);
        deepStrictEqual(refused.map(({ entry, reason }) => `${entry}: ${reason}`), refusals);
    }
});

test('masks of servers match the same hosts as in the native host', () => {
    for (const [skipServers, host, isIn] of shared('wenativehost/servers.json').servers) {
        const masks = leftServers({ browser: { monitor: { skipServersEnabled: true, skipServers } } });
        strictEqual(isServerIn(masks, host), isIn, `"${skipServers}" and "${host}"`);
    }
});

/** URL, attribute "download", text of the link; kind, name, whether following it may have side effects. */
const links = [
    ['/a/manual.PDF?x=1', null, 'Manual', 'document', 'manual.PDF', false],
    ['/live.M3U8?x', null, '', 'stream', 'live.M3U8', false],
    ['/get?id=5', 'song.mp3', '', 'audio', 'song.mp3', false],
    ['/source-2.1.tar.gz', null, '', 'archive', 'source-2.1.tar.gz', false],
    ['/data.unheard', null, '', 'other', 'data.unheard', false],
    ['/export', '', 'Export', 'other', 'export', false],
    ['/index.php', null, '', 'page', 'index.php', false],
    ['/news/', null, 'News', 'page', 'News', false],
    ['/', null, '', 'page', 'https://example.org/', false],
    ['/account/log-out', null, '', 'page', 'log-out', true],
    ['/item?action=delete&id=1', null, '', 'page', 'item', true],
    ['/d/1.zip', null, 'Löschen', 'archive', '1.zip', true],
    ['/u?a=%zz', null, 'Выйти', 'page', 'u', true],
    ['/item/5', null, 'この項目を削除する', 'page', '5', true],
    ['/catalogue/signoutput.bin', null, 'Undeleted scenes', 'program', 'signoutput.bin', false],
];

test('guesses the kind and name of a link, and whether it triggers an action', () => {
    for (const [path, download, text, kind, name, acts] of links) {
        const link = { url: `https://example.org${path}`, download, text };
        deepStrictEqual([kinds.of(link), nameOf(link), seemsToAct(link)], [kind, name, acts], path);
    }
});

test('file types are the same as in the native host', () => {
    const types = { video: 'Video', audio: 'Music', document: 'Document', image: 'Image' };
    for (const [names, type] of shared('downloads/downloads.json').fileTypes) {
        for (const download of names.split('|').filter(name => name.includes('.')))
            strictEqual(types[kinds.of({ url: 'https://example.org/', download })] ?? 'Unknown', type, download);
    }
});

test('the timeout of the host is shorter than that of the extension', () => {
    const header = readFileSync(new URL('../../src/common/remote/vhipcincomingdownloadsclient.h', import.meta.url), 'utf8');
    const [, wait] = header.match(/maxWaitMs = ([\d']+);/);
    ok(Number(wait.replaceAll("'", '')) + 3000 <= applicationTimeoutMs, wait);
});

/** In milliseconds: Chromium's time for an answer, and until it has a path; and whether the user chose the path. */
const paths = [[0, 250, false], [0, 400, true], [60, 600, false], [60, 1000, true], [500, 1100, true]];

test('a late path means a save dialog, unless the browser is slow in general', async () => {
    let now = 0;
    const timers = new Map();
    mock.method(Date, 'now', () => now);
    mock.method(globalThis, 'setTimeout', (work, delay = 0, ...args) => {
        const timer = { at: now + delay };
        timers.set(timer, () => work(...args));
        return timer;
    });
    mock.method(globalThis, 'clearTimeout', timer => timers.delete(timer));
    const listeners = new Set();
    let lag;
    globalThis.chrome = { downloads: {
        onDeterminingFilename: {},
        onChanged: { addListener: each => listeners.add(each), removeListener: each => listeners.delete(each) },
        search: () => new Promise(resolve => { setTimeout(resolve, lag, [{}]); }),
    } };
    try {
        const { nameOf: nameOfDownload } = await import('../../extension/lib/browserdownloads.js');
        for (const [id, [answersAfter, told, isUsers]] of paths.entries()) {
            lag = answersAfter;
            let name = 'none yet';
            nameOfDownload({ id, filename: '' }).then(found => { name = found; });
            setTimeout(() => listeners.forEach(tell => tell({ id, filename: { current: '/home/file' } })), told);
            while (name === 'none yet') {
                const [next] = [...timers.keys()].sort((a, b) => a.at - b.at);
                const work = timers.get(next);
                timers.delete(next);
                now = next.at;
                work();
                await new Promise(setImmediate);
            }
            strictEqual(name, isUsers ? undefined : 'file', `${paths[id]}`);
        }
    } finally {
        mock.restoreAll();
    }
});
