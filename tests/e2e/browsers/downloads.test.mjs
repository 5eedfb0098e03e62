// All ways in which a download can begin in a real browser: those for the application arrive there,
// requested with the browser's headers; the others stay in the browser; and there are no two copies.

import { deepStrictEqual, strictEqual } from 'node:assert';
import { mkdirSync, readdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { browserNames, hostProgram, unregisterHost } from '../../../tools/drivers/browsers.mjs';
import { DownloadSite } from '../../../tools/drivers/downloadsite.mjs';
import { BrowserFixture } from '../support/browserfixture.mjs';

const cookies = ['strict=1; SameSite=Strict', 'lax=1; SameSite=Lax', 'none=1', 'own=1; Secure; Partitioned'];

/** The element to click and its page, for the file of that name; * marks those that stay in the browser. */
const rows = {
    '/page': ['link', 'tab', 'attribute', 'elsewhere', 'noreferrer', 'encoded', 'get', 'post', 'latin', 'multipart*', 'moved',
              'moved-post', 'password*', 'slow*'],
    '/frame': ['framed'],
    '/foreign': ['foreign-post', 'foreign-link'],
    '/origin': ['origin'],
    '/scripts': ['worker*', 'blob*', 'data*'],
    '/ahead': ['ahead'],
};
/** Those that arrive at once, or when the test releases them. */
const unheld = ['slow', 'blob', 'data'];
/** Chromium does not expose the data of a form that is not UTF-8; and only there a link needs a gesture. */
const leftByChromium = ['latin', 'scripted'];
/** One in a container of Firefox. */
const contained = 'contained';
/** Those that begin without a click. */
const addresses = { refreshed: '/refreshed', typed: '/file/typed?held', scripted: '/scripted' };
/** Error responses with an attachment, which are no downloads. */
const failing = [300, 404, 500];
/** Begun by another extension. */
const another = 'another';

const form = (name, to, more = '') => `<form ${more} method="post" action="${to}"><input name="a" value="b ü">
    <button id="${name}">${name}</button></form>`;
const link = (name, to = `/file/${name}`, more = '', wish = '?held') =>
    `<p><a id="${name}" href="${to}${wish}" ${more}>${name}</a></p>`;

function build(site) {
    const page = html => ({ html, headers: { 'Set-Cookie': cookies.map(each => `${each}; Path=/`) } });
    site.pages['/page'] = page([
        '<h1>Files</h1>', link('link'), link('tab', undefined, 'target="_blank"'), link('attribute', undefined, 'download'),
        link('elsewhere', `${site.otherOrigin}/file/elsewhere`, 'download'),
        link('noreferrer', undefined, 'rel="noreferrer"'), link('encoded', undefined, '', '?gzip'),
        link('password', `${site.otherOrigin.replace('//', '//user:secret@')}/file/password`, '', '?auth&held'),
        link('slow', undefined, '', '?late'),
        '<form action="/file/get"><input name="held"><button id="get">get</button></form>',
        form('post', '/file/post?held'), form('latin', '/file/latin?held', 'accept-charset="windows-1252"'),
        form('multipart', '/file/multipart?held', 'enctype="multipart/form-data"'),
        `<p><a id="moved" href="/?to=/file/moved?held">moved</a></p>`,
        form('moved-post', '/?by=307&to=/file/moved-post?held'),
        '<iframe src="/frame"></iframe>',
    ].join(''));
    site.pages['/frame'] = page(link('framed'));
    site.pages['/foreign'] = form('foreign-post', `${site.origin}/file/foreign-post?held`)
        + link('foreign-link', `${site.origin}/file/foreign-link`);
    site.pages['/origin'] = { ...page(link('origin')), headers: { 'Referrer-Policy': 'origin' } };
    site.pages['/container'] = { html: link(contained), headers: { 'Set-Cookie': 'box=1' } };
    site.pages['/refreshed'] = '<meta http-equiv="refresh" content="0;url=/file/refreshed?held">';
    site.pages['/scripted'] = `${link('scripted', undefined, 'download')}<script>scripted.click()</script>`;
    site.pages['/ahead'] = page(`${link('ahead', undefined, '', '')}<script type="speculationrules">
        {"prefetch": [{"source": "list", "urls": ["/file/ahead"], "eagerness": "immediate"}]}</script>`);
    site.pages['/scripts'] = `${link('worker', '/worker/file')}<a id="blob" download="b">blob</a> <a id="data" download="d">data</a>
        <script>
        const get = async path => (await fetch(path)).blob();
        async function prepare() {
            await navigator.serviceWorker.register("/worker.js");
            await navigator.serviceWorker.ready;
            blob.href = URL.createObjectURL(await get("/file/blob"));
            const reader = new FileReader();
            reader.onload = () => { data.href = reader.result; document.title = "ready"; };
            reader.readAsDataURL(await get("/file/data"));
        }
        prepare();</script>`;
    site.pages['/worker.js'] = `onfetch = event => { if (event.request.url.includes("/worker/file"))
        event.respondWith(fetch("/file/worker?held")); }; onactivate = event => event.waitUntil(clients.claim());`;
    const pick = (name, more, to = '') => link(name, `${to}/file/${name}`, more, '');
    site.pages['/picks'] = page(`<meta name="referrer" content="unsafe-url"><h1>Pick</h1>${pick('picked')}
        ${pick('picked-unseen', 'rel="noreferrer"')} ${pick('picked-origin', 'referrerpolicy="origin"')}
        <div id="some">${pick('picked-away', '', site.otherOrigin)}</div>`);
}

/** Has another extension download a file. */
function downloadByAnother({ sandbox, browser }, url) {
    const folder = join(sandbox.folder, another);
    mkdirSync(folder);
    writeFileSync(join(folder, 'manifest.json'), JSON.stringify({
        manifest_version: 3, name: another, version: '1', permissions: ['downloads'],
        background: { service_worker: 'script.js', scripts: ['script.js'] },
    }));
    writeFileSync(join(folder, 'script.js'), `chrome.downloads.download({ url: '${url}' });`);
    return browser.browser.installExtension(folder);
}

for (const name of browserNames) {
    describe(`${name} with the application`, { timeout: 300_000 }, () => {
        let fixture;
        let site;
        const files = [];
        const openTab = async address => {
            const page = await fixture.browser.browser.newPage();
            await page.goto(address);
            return page;
        };
        // A URL that becomes a download is never shown as a page.
        const type = async address => void (await fixture.browser.browser.newPage()).goto(address).catch(() => {});
        before(async () => {
            site = await DownloadSite.start();
            build(site);
            fixture = await BrowserFixture.start(name, ['kov'], { server: site });
        });
        after(() => fixture?.end());

        test('a download begins', async () => {
            deepStrictEqual(fixture.sandbox.running('kov'), []);
            await fixture.ask('changePreferences', { changes: { 'keeping.modifier': 'ctrl' } });
            const left = [];
            for (const [path, names] of Object.entries(rows)) {
                const page = path === '/page' ? fixture.page
                    : await openTab((path === '/foreign' ? site.otherOrigin : site.origin) + path);
                if (path === '/ahead' && name === 'chromium')
                    await fixture.until(() => site.asked('/file/ahead').length > 0, 'the browser to ask ahead');
                if (path === '/scripts')
                    await page.waitForFunction(() => document.title === 'ready');
                for (const each of names) {
                    const row = each.replace('*', '');
                    if (row !== each || (name === 'chromium' && leftByChromium.includes(row)))
                        left.push(`/file/${row}`);
                    files.push(`/file/${row}`);
                    // Gestures in a tab after its request was sent do not count.
                    const hold = row === 'slow' ? page.keyboard : null;
                    // Fails while Firefox closes the tab of a page that became a download.
                    await fixture.until(() => page.bringToFront().then(() => true, () => false), 'the page to be in front');
                    await hold?.down('Control');
                    await page.click(`#${row}`);
                    await hold?.up('Control');
                    // A browser keeps only a few connections to one server.
                    await fixture.until(() => site.asked(`/file/${row}`).length > 0, `${row} to begin`);
                    if (hold) {
                        await page.click('h1');
                        site.release(`/file/${row}`);
                    }
                }
            }
            for (const [row, address] of Object.entries(addresses)) {
                if (name === 'chromium' && leftByChromium.includes(row))
                    left.push(`/file/${row}`);
                files.push(`/file/${row}`);
                await type(site.origin + address);
            }
            for (const status of failing)
                await type(`${site.origin}/file/${status}?status=${status}`);
            left.push(`/file/${another}`);
            files.push(`/file/${another}`);
            await downloadByAnother(fixture, `${site.origin}/file/${another}?held`);
            if (name === 'firefox') {
                files.push(`/file/${contained}`);
                const page = await (await fixture.browser.browser.createBrowserContext()).newPage();
                await page.goto(`${site.origin}/container`);
                await page.click(`#${contained}`);
                await fixture.until(() => site.asked(`/file/${contained}`).length > 0, `${contained} to begin`);
            }
            await fixture.untilBrowserLists(left.length);
            left.filter(each => !unheld.some(row => each.endsWith(row))).forEach(each => site.release(each));
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
            for (const path of files) {
                const [first, ...others] = site.asked(path).map(({ isOpen: _, ...asked }) => asked);
                deepStrictEqual(others, left.includes(path) ? [] : [first], path);
            }
            for (const status of failing)
                strictEqual(site.asked(`/file/${status}`).length, 1);
            // A file that the browser had completed keeps its name, too.
            deepStrictEqual(readdirSync(fixture.sandbox.downloads).filter(each => each.includes('(')), []);
            strictEqual(fixture.sandbox.running('kov').length, 1);
            strictEqual((await fixture.ask('status')).problem, null);
        });

        test('links that the user picks', async () => {
            const page = await openTab(`${site.origin}/picks`);
            // Firefox does not show Secure cookies for http: to extensions, though it sends them to this host.
            const own = name === 'firefox' ? '' : '; own=1';
            const mine = `strict=1; lax=1; none=1${own}`;
            const seen = `${site.origin}/picks`;
            // Cookies belong to hosts, not ports; the other host has none of them.
            await openTab(`${site.otherOrigin}/page`);
            const picks = [
                ['dllink', '#picked', { picked: [mine, seen] }],
                ['dllink', '#picked-unseen', { 'picked-unseen': [mine, ''] }],
                ['dlselected', '#some', { 'picked-away': [`lax=1; none=1${own}`, seen] }],
                ['dllink', '#picked-origin', { 'picked-origin': [mine, `${site.origin}/`] }],
            ];
            await page.bringToFront();
            await page.evaluate(() => document.getSelection().selectAllChildren(document.querySelector('#some')));
            for (const [entry, selector, wanted] of picks) {
                await fixture.chooseMenu(page, selector, entry);
                for (const [file, rights] of Object.entries(wanted)) {
                    files.push(`/file/${file}`);
                    await fixture.until(() => site.asked(`/file/${file}`).length > 0, `${file} to be asked for`);
                    const [{ cookie, referer }] = site.asked(`/file/${file}`);
                    deepStrictEqual([cookie, referer], rights, file);
                }
            }
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
        });

        test('requests of web pages and unknown options are rejected', async () => {
            const answer = await fixture.extension.evaluate(async tabId => (await chrome.scripting.executeScript({
                target: { tabId },
                func: () => chrome.runtime.sendMessage({ request: 'settings' }).catch(() => null),
            }))[0].result, await fixture.tabId(`${site.otherOrigin}/page`));
            strictEqual(answer ?? null, null);
            const { problem } = await fixture.extension.evaluate(() => chrome.runtime.sendMessage(
                { request: 'changeSettings', changes: { 'constructor.prototype': true } }));
            strictEqual(problem, 'There is no option constructor.prototype.');
        });

        test('the options page changes a setting of the application, and follows its changes', async () => {
            await fixture.extension.evaluate(() => {
                const field = document.querySelector('[name="monitor.skipExtensions"]');
                field.value = '*.PLS, .m3u tar.gz';
                field.dispatchEvent(new Event('change'));
            });
            await fixture.until(() => fixture.application('get', 'WbDownloadsUnwantedExtensionsList') === 'pls m3u',
                              'the setting to reach the application');
            fixture.application('set', 'WbDontInterceptTooSmallDownloads', '1');
            fixture.application('set', 'WbDownloadsTooSmallSizeValue', '4096');
            await fixture.until(async () => await fixture.extension.evaluate(
                () => document.querySelector('[name="monitor.skipSmallerThan"]').value) === '4', // KB
            'the options page to show the new value');
        });

        test('downloads stay in the browser by a rule, and while catching is off', async () => {
            const leave = async file => {
                await type(`${site.origin}/file/${file}`);
                files.push(`/file/${file}`);
                await fixture.untilDownloaded(fixture.sandbox.downloads, files);
                strictEqual(site.asked(`/file/${file}`).length, 1);
            };
            await leave('list.m3u');
            const setCatching = async on => {
                fixture.application('set', 'WbInterceptDownloads', String(Number(on)));
                await fixture.until(async () => (await fixture.ask('settings')).browser.monitor.enable === on,
                                  'the extension to hear of it');
            };
            await setCatching(false);
            await leave('off');
            strictEqual((await fixture.ask('status')).problem, null);
            // Nothing but what the referrer of a link needs.
            if (name === 'chromium') { // Firefox does not tell
                deepStrictEqual(await fixture.browser.inScript(fixture.extension, ({ chrome: api }) =>
                    ['downloads', 'tabs', 'webNavigation', 'webRequest'].flatMap(part => Object.entries(api[part])
                        .filter(([, member]) => member.hasListeners?.()).map(([event]) => `${part}.${event}`))),
                ['webRequest.onHeadersReceived']);
            }
            const begin = async (file, wish) => {
                files.push(`/file/${file}`);
                await type(`${site.origin}/file/${file}?${wish}`);
                await fixture.until(() => site.asked(`/file/${file}`).length > 0, `${file} to begin`);
            };
            await begin('unseen', 'late');
            await setCatching(true);
            site.release('/file/unseen');
            await begin('seen', 'held');
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
            deepStrictEqual(['unseen', 'seen'].map(each => site.asked(`/file/${each}`).length), [1, 2]);
        });
    });

    describe(`${name} without the application`, { timeout: 180_000 }, () => {
        let fixture;
        before(async () => {
            const server = await DownloadSite.start();
            server.pages['/page'] = link('file') + link('hostless');
            fixture = await BrowserFixture.start(name, [], { server });
        });
        after(() => fixture?.end());

        test('a download stays in the browser, and the user sees why', async () => {
            await fixture.page.click('#file');
            await fixture.untilThere(() => fixture.ask('status'), ({ problem }) =>
                problem === 'Kovalo is not installed beside its host, so downloads stay in the browser.');
            fixture.server.release('/file/file');
            await fixture.untilDownloaded(fixture.sandbox.downloads, ['/file/file']);
            strictEqual(await fixture.extension.evaluate(() => chrome.action.getBadgeText({})), '!');
        });

        test('the same without the host', async () => {
            unregisterHost(fixture.sandbox, name);
            fixture.sandbox.running(hostProgram).forEach(pid => process.kill(pid));
            await fixture.untilThere(() => fixture.ask('status'), ({ version }) => version === '');
            await fixture.page.click('#hostless');
            const { state, reason } = await fixture.untilThere(
                async () => (await fixture.ask('outcomes')).find(each => each.name === 'hostless'), Boolean);
            deepStrictEqual([state, reason], ['browser', 'problemHostMissing']);
            fixture.server.release('/file/hostless');
            await fixture.untilDownloaded(fixture.sandbox.downloads, ['/file/file', '/file/hostless']);
        });
    });
}
