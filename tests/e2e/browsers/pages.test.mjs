// The extension's pages as a user uses them, and whether everybody can.

import { deepStrictEqual, strictEqual } from 'node:assert';
import { existsSync, renameSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import axe from 'axe-core';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { Visit } from '../support/visit.mjs';

const pages = ['popup.html', 'options.html', 'links.html', 'help.html'];

for (const name of browserNames) {
    describe(`pages in ${name}`, { timeout: 240_000 }, () => {
        let visit;
        let popup;
        let help;
        before(async () => {
            visit = await Visit.start(name, ['kov']);
            popup = await visit.browser.openExtensionPage('popup.html');
            help = await visit.browser.openExtensionPage('help.html');
            await visit.until(async () => (await visit.ask('settings')) !== null, 'the settings');
        });
        after(() => visit?.end());

        const click = (page, selector) => page.evaluate(each => document.querySelector(each).click(), selector);
        const shown = () => popup.evaluate(() => [...document.querySelectorAll('#downloads li')].map(
            each => [...each.querySelectorAll('.name, small')].map(part => part.textContent.split(' · ')[0])));
        const steps = () => help.evaluate(() => Object.fromEntries([...document.querySelectorAll('#steps li')].map(
            each => [each.dataset.step, each.className])));
        const stepsAre = wanted => visit.until(
            async () => JSON.stringify(await steps()) === JSON.stringify(wanted), JSON.stringify(wanted));
        async function download() {
            await visit.page.bringToFront();
            await visit.page.click('#file');
        }

        test('assistive technology finds its way', async () => {
            for (const address of pages) {
                const page = await visit.browser.openExtensionPage(address);
                await page.evaluate(new Function(axe.source));
                deepStrictEqual(await page.evaluate(async () => (await globalThis.axe.run()).violations.map(
                    ({ id, nodes }) => `${id}: ${nodes.map(node => node.target).join(' ')}`)), [], address);
            }
        });

        test('the next download is kept, the one after it is not, and one from a page of a kept server is', async () => {
            await click(popup, '#keepNext');
            await visit.until(async () => (await visit.ask('keeping')).next, 'the button to hold');
            await download();
            await visit.until(async () => (await shown())[0]?.[1] === 'Kept in the browser', 'the popup to say so');
            strictEqual((await visit.ask('keeping')).next, false);
            await download();
            await visit.until(async () => (await shown())[0]?.[1] === 'Handed over to Kovalo', 'the popup to say so');
            const url = visit.server.pageUrl;
            deepStrictEqual(await visit.ask('leaveSite', { url, leave: true }), { host: new URL(url).hostname, isLeft: true });
            await download();
            await visit.until(async () => (await shown()).length === 3, 'the third to be listed');
            deepStrictEqual((await shown()).map(([, words]) => words),
                            ['Kept in the browser', 'Handed over to Kovalo', 'Kept in the browser']);
            strictEqual((await visit.ask('leaveSite', { url, leave: false })).isLeft, false);
        });

        test('the user chooses among the links of a page', async () => {
            await visit.page.evaluate(() => document.body.insertAdjacentHTML('beforeend',
                '<a href="/account/logout">bye</a> <a href="mailto:a@example.com">write</a>'));
            await visit.ask('chooseLinks', { tabId: await visit.tabId(visit.server.pageUrl) });
            const address = await visit.untilThere(() => visit.extension.evaluate(async () =>
                (await chrome.tabs.query({})).find(tab => tab.url?.includes('links.html'))?.url), Boolean);
            const links = await visit.browser.openExtensionPage(address.slice(address.indexOf('links.html')));
            const rows = await links.evaluate(() => [...document.querySelectorAll('#links tr')].map(
                row => [row.querySelector('label').title, row.querySelector('input').checked]));
            strictEqual(rows.some(([url]) => url.startsWith('mailto:')), false);
            deepStrictEqual(rows.filter(([, checked]) => !checked).map(([url]) => new URL(url).pathname), ['/account/logout']);
            await links.evaluate(() => {
                document.getElementById('filter').value = 'one.bin';
                document.getElementById('filter').dispatchEvent(new Event('input'));
                document.getElementById('form').requestSubmit();
            });
            await visit.until(() => visit.application('jobs').includes('one.bin'), 'the application to have it');
            strictEqual(visit.application('jobs').includes('two.bin'), false);
        });

        test('the page on problems names the broken link', async () => {
            const fine = { browser: 'ok', access: 'ok', host: 'ok', application: 'ok', download: 'ok' };
            await click(help, '#test');
            await stepsAre(fine);
            strictEqual(existsSync(join(visit.sandbox.downloads, 'kovalo-test.txt')), true);

            const kov = join(visit.sandbox.programs, 'kov');
            visit.application('quit');
            await visit.until(() => visit.sandbox.running('kov').length === 0, 'the application to end');
            renameSync(kov, `${kov}.away`);
            await click(help, '#test');
            await stepsAre({ ...fine, application: 'broken', download: 'unknown' });
            renameSync(`${kov}.away`, kov);

            renameSync(visit.sandbox.host, `${visit.sandbox.host}.away`);
            for (const pid of visit.sandbox.running('wenativehost.away'))
                process.kill(pid, 'SIGKILL');
            await visit.until(async () => (await steps()).host === 'broken', 'the host to be the broken link');
            renameSync(`${visit.sandbox.host}.away`, visit.sandbox.host);
            await click(help, '#again');
            await visit.until(async () => (await steps()).host === 'ok', 'the host to be found again');
        });
    });
}
