// The extension's pages as a user uses them, and whether everybody can.

import { deepStrictEqual, strictEqual } from 'node:assert';
import { after, before, describe, test } from 'node:test';
import axe from 'axe-core';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { Visit } from '../support/visit.mjs';

const pages = ['popup.html', 'options.html', 'links.html', 'help.html'];

for (const name of browserNames) {
    describe(`pages in ${name}`, { timeout: 240_000 }, () => {
        let visit;
        let popup;
        before(async () => {
            visit = await Visit.start(name, ['kov']);
            popup = await visit.browser.openExtensionPage('popup.html');
            await visit.until(async () => (await visit.ask('settings')) !== null, 'the settings');
        });
        after(() => visit?.end());

        const click = (page, selector) => page.evaluate(each => document.querySelector(each).click(), selector);
        const shown = () => popup.evaluate(() => [...document.querySelectorAll('#downloads li')].map(
            each => [...each.querySelectorAll('.name, small')].map(part => part.textContent.split(' · ')[0])));
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
    });
}
