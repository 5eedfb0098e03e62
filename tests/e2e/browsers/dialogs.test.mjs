// Downloads that the user saves with the browser's own dialog stay there, and nothing is requested
// twice.

import { deepStrictEqual, strictEqual } from 'node:assert';
import { existsSync, readdirSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { DownloadSite } from '../../../tools/drivers/downloadsite.mjs';
import { Screen } from '../../../tools/drivers/screen.mjs';
import { Visit } from '../support/visit.mjs';

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
        let visit;
        let screen;
        const files = () => (existsSync(visit.sandbox.downloads) ? readdirSync(visit.sandbox.downloads) : [])
            .filter(each => !/\.(part|crdownload)$/.test(each)).length;
        const start = async asksWhere => {
            const server = await DownloadSite.start();
            server.pages['/page'] = `<title>page</title><a id="link" href="/file/link">link</a>
                <img id="image" src="/image.svg">
                <a id="asked" href="/file/asked">asked</a>
                <form method="post" action="/order"><input name="item" value="1"><button id="order">order</button></form>`;
            server.pages['/image.svg'] = '<svg xmlns="http://www.w3.org/2000/svg" width="50" height="50"/>';
            server.pages['/order'] = '<title>order</title>thanks';
            server.pages['/document.pdf'] = { html: pdf, headers: { 'Content-Type': 'application/pdf' } };
            visit = await Visit.start(name, ['kov'], { server, screen, asksWhere });
            await visit.browser.dialog.prepare(visit.sandbox.downloads);
        };
        before(async () => { if (name === 'chromium') screen = await Screen.start(); });
        after(async () => {
            await visit?.end();
            screen?.stop();
        });

        test('a link, an image, a page, the answer to a form, the document in the PDF viewer', async () => {
            await start(false);
            let saved = 0;
            for (const [what, selector, path] of rows) {
                if (path === '/order') {
                    await visit.page.click('#order');
                    await visit.page.waitForFunction(() => document.title === 'order');
                }
                if (what === 'viewer')
                    await visit.page.goto(visit.server.origin + path);
                await visit.browser.dialog.ask(what, visit.page, await visit.page.$(selector));
                await visit.browser.dialog.accept();
                await visit.until(() => files() > saved, `${path} to be saved`);
                saved = files();
                strictEqual(visit.server.asked(path).length, 1, path);
            }
            deepStrictEqual(await visit.ask('outcomes'), []);
            deepStrictEqual(visit.sandbox.running('kov'), []);
            await visit.end();
        });

        test('a download for which it asks where', async () => {
            await start(true);
            await visit.extension.evaluate(() => {
                globalThis.stages = [];
                chrome.storage.local.onChanged.addListener(({ handovers }) =>
                    handovers && globalThis.stages.push(handovers.newValue[0]?.stage ?? 'over'));
            });
            await visit.page.click('#asked');
            await visit.until(() => visit.browser.dialog.isOpen(), 'the dialog');
            const stages = () => visit.extension.evaluate(() => globalThis.stages);
            // Firefox reports the download afterwards, Chromium before.
            if (name === 'firefox')
                await new Promise(resolve => { setTimeout(resolve, thinkingTime); });
            else
                await visit.untilThere(stages, told => told.includes('over'));
            await visit.browser.dialog.accept();
            await visit.untilDownloaded(visit.sandbox.downloads, ['/file/asked']);
            strictEqual((await stages()).includes('offered'), false);
            strictEqual(visit.server.asked('/file/asked').length, 1);
        });
    });
}
