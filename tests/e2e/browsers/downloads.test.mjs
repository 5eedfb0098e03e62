// Downloads caught in real browsers arrive in the application, or stay where they are to stay.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { readdirSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { browserDownloads, browserNames } from '../../../tools/drivers/browsers.mjs';
import { Visit } from '../support/visit.mjs';

/** What is clicked, which entry is chosen then, and the files that it asks for. */
const menuChoices = [
    ['dllink', '#small', ['/files/list.m3u']],
    ['dlselected', '#some', ['/files/one.bin', '/files/two.bin']],
    ['dlall', 'h1', ['/files/data.bin', '/files/moved.bin', '/files/list.m3u', '/files/one.bin', '/files/two.bin']],
];

for (const name of browserNames) {
    describe(`${name} with the application`, { timeout: 300_000 }, () => {
        let visit;
        const arrived = [];
        before(async () => { visit = await Visit.start(name, ['kov']); });
        after(() => visit?.end());

        test('a link to a file: the application is started and gets it, the browser forgets it', async () => {
            deepStrictEqual(visit.sandbox.running('kov'), []);
            await visit.page.click('#file');
            arrived.push('/files/data.bin');
            await visit.untilDownloaded(visit.sandbox.downloads, arrived);
            await visit.untilBrowserLists(0);
            deepStrictEqual(readdirSync(visit.sandbox.downloads), ['data.bin']);
            strictEqual(visit.sandbox.running('kov').length, 1);
            ok(visit.server.requests.every(request => request.allowed), JSON.stringify(visit.server.requests));
            strictEqual((await visit.ask('status')).problem, null);
        });

        test('a link that leads elsewhere', async () => {
            await visit.page.click('#moved');
            arrived.push('/files/moved.bin');
            await visit.untilDownloaded(visit.sandbox.downloads, arrived);
            await visit.untilBrowserLists(0);
        });

        test('a form that posts', async () => {
            await visit.page.click('#form button');
            await visit.untilDownloaded(visit.sandbox.downloads, [...arrived, '/report']);
            arrived.push('/report');
            await visit.untilBrowserLists(0);
        });

        for (const [entry, selector, files] of menuChoices) {
            test(`the menu's ${entry}`, async () => {
                await visit.page.evaluate(() => document.getSelection().selectAllChildren(document.querySelector('#some')));
                await visit.chooseMenu(visit.page, selector, entry);
                arrived.push(...files);
                await visit.untilDownloaded(visit.sandbox.downloads, arrived);
                strictEqual((await visit.ask('status')).problem, null);
            });
        }

        test('the options page changes a setting of the application, and follows one', async () => {
            await visit.extension.evaluate(() => {
                document.querySelector('[name="monitor.skipExtensions"]').value = 'pls m3u';
                document.getElementById('form').requestSubmit();
            });
            await visit.until(() => visit.application('get', 'WbDownloadsUnwantedExtensionsList') === 'pls m3u',
                              'the setting to reach the application');
            visit.application('set', 'WbDontInterceptTooSmallDownloads', '1');
            visit.application('set', 'WbDownloadsTooSmallSizeValue', '4096');
            await visit.until(async () => await visit.extension.evaluate(
                () => document.querySelector('[name="monitor.skipSmallerThan"]').value) === '4096',
            'the options page to show the new value');
        });

        test('what a rule leaves to the browser stays there', async () => {
            await visit.page.click('#small');
            await visit.untilDownloaded(browserDownloads(visit.sandbox), ['/files/list.m3u']);
            await visit.untilBrowserLists(1);
            strictEqual((await visit.ask('status')).problem, null);
        });

        test('while catching is off, all stays in the browser', async () => {
            visit.application('set', 'WbInterceptDownloads', '0');
            await visit.until(async () => (await visit.ask('settings')).browser.monitor.enable === false,
                              'the extension to hear of it');
            await visit.page.click('#file');
            await visit.untilDownloaded(browserDownloads(visit.sandbox), ['/files/list.m3u', '/files/data.bin']);
        });
    });

    describe(`${name} without the application`, { timeout: 180_000 }, () => {
        let visit;
        before(async () => { visit = await Visit.start(name, []); });
        after(() => visit?.end());

        test('a download stays in the browser, and the user is told why', async () => {
            await visit.page.click('#file');
            await visit.untilDownloaded(browserDownloads(visit.sandbox), ['/files/data.bin']);
            strictEqual((await visit.ask('status')).problem,
                        'Kovalo is not installed beside its host, so downloads stay in the browser.');
            strictEqual(await visit.extension.evaluate(() => chrome.action.getBadgeText({})), '!');
        });
    });
}
