// Downloads that the user saves with the browser's own dialog, or in a private window, stay there, and
// nothing is requested twice. Those after the prompt for multiple downloads are caught.

import { deepStrictEqual, strictEqual } from 'node:assert';
import { existsSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { DownloadSite } from '../../../tools/drivers/downloadsite.mjs';
import { Screen } from '../../../tools/drivers/screen.mjs';
import { BrowserFixture } from '../support/browserfixture.mjs';

/** The target, where to click, and the path that is requested exactly once. */
const rows = [
    ['link', '#link', '/file/link'],
    ['image', '#image', '/image.svg'],
    ['page', 'body', '/page'],
    ['page', 'body', '/order'],
    ['viewer', 'body', '/document.pdf'],
];
const pdf = `%PDF-1.4
1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj 2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj
3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 300]>>endobj trailer<</Root 1 0 R>>
%%EOF`;

/** In milliseconds. No user answers a dialog faster. */
const thinkingTime = 400;

for (const name of browserNames) {
    describe(`${name} saves by its own dialog`, { timeout: 180_000 }, () => {
        let fixture;
        let screen;
        const files = () => (existsSync(fixture.sandbox.downloads) ? readdirSync(fixture.sandbox.downloads) : [])
            .filter(each => !/\.(part|crdownload)$/.test(each)).length;
        const start = async asksWhere => {
            await fixture?.end();
            fixture = null;
            const server = await DownloadSite.start();
            server.pages['/page'] = `<title>page</title><a id="link" href="/file/link">link</a>
                <img id="image" src="/image.svg">
                <a id="asked" href="/file/asked">asked</a>
                <button id="several" onclick="for (const each of ['first', 'second'])
                    Object.assign(document.createElement('a'), { href: '/file/' + each + '?held', download: '' }).click()">several</button>
                <form method="post" action="/order"><input name="item" value="1"><button id="order">order</button></form>`;
            server.pages['/image.svg'] = '<svg xmlns="http://www.w3.org/2000/svg" width="50" height="50"/>';
            server.pages['/order'] = '<title>order</title>thanks';
            server.pages['/document.pdf'] = { html: pdf, headers: { 'Content-Type': 'application/pdf' } };
            server.pages['/secret'] = '<meta http-equiv="refresh" content="0;url=/file/secret">';
            fixture = await BrowserFixture.start(name, ['kov'], { server, screen, asksWhere, privately: true });
            await fixture.browser.dialog.prepare(fixture.sandbox.downloads);
        };
        before(async () => { if (name === 'chromium') screen = await Screen.start(); });
        after(async () => {
            await fixture?.end();
            screen?.stop();
        });

        test('a link, an image, a page, the answer to a form, the document in the PDF viewer, a private window', async () => {
            await start(false);
            let saved = 0;
            for (const [what, selector, path] of rows) {
                if (path === '/order') {
                    await fixture.page.click('#order');
                    await fixture.page.waitForFunction(() => document.title === 'order');
                }
                if (what === 'viewer')
                    await fixture.page.goto(fixture.server.origin + path);
                await fixture.browser.dialog.ask(what, fixture.page, await fixture.page.$(selector));
                await fixture.browser.dialog.accept();
                await fixture.until(() => files() > saved, `${path} to be saved`);
                saved = files();
                strictEqual(fixture.server.asked(path).length, 1, path);
            }
            const windowId = await fixture.extension.evaluate(
                async url => (await chrome.windows.create({ incognito: true, url })).id, `${fixture.server.origin}/secret`);
            await fixture.until(async () => {
                if (await fixture.browser.dialog.isOpen()) // in Chromium
                    await fixture.browser.dialog.accept();
                return existsSync(join(fixture.sandbox.downloads, 'secret'));
            }, 'the file of the private window to be saved');
            await fixture.extension.evaluate(id => chrome.windows.remove(id), windowId);
            strictEqual(fixture.server.asked('/file/secret').length, 1);
            deepStrictEqual(await fixture.ask('outcomes'), []);
            deepStrictEqual(fixture.sandbox.running('kov'), []);

            await fixture.page.goto(fixture.server.pageUrl);
            await fixture.page.click('#several');
            const places = async () => (await fixture.ask('outcomes')).map(each => `${each.name} ${each.state}`).sort().join();
            await fixture.browser.dialog.allowSeveral(async () => await places() === 'first application,second application');
            deepStrictEqual(['first', 'second'].map(each => fixture.server.asked(`/file/${each}`).length), [2, 2]);
        });

        test('a download for which the browser asks where to save it', async () => {
            await start(true);
            await fixture.extension.evaluate(() => {
                globalThis.stages = [];
                chrome.storage.local.onChanged.addListener(({ handovers }) =>
                    handovers && globalThis.stages.push(handovers.newValue[0]?.stage ?? 'over'));
            });
            await fixture.page.click('#asked');
            await fixture.until(() => fixture.browser.dialog.isOpen(), 'the dialog');
            const stages = () => fixture.extension.evaluate(() => globalThis.stages);
            // Firefox reports the download afterwards, Chromium before.
            if (name === 'firefox')
                await new Promise(resolve => { setTimeout(resolve, thinkingTime); });
            else
                await fixture.untilThere(stages, told => told.includes('over'));
            await fixture.browser.dialog.accept();
            await fixture.untilDownloaded(fixture.sandbox.downloads, ['/file/asked']);
            strictEqual((await stages()).includes('offered'), false);
            strictEqual(fixture.server.asked('/file/asked').length, 1);
        });
    });
}
