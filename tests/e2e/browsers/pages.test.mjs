// The extension's pages as a user uses them, and their accessibility.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { existsSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import axe from 'axe-core';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { BrowserFixture } from '../support/browserfixture.mjs';

/** In milliseconds: a timeout for hangs, so that the browser is still closed. */
const timeoutMs = 150_000;

for (const name of browserNames) {
    describe(`pages in ${name}`, () => {
        let fixture;
        const pages = {};
        before(async () => {
            fixture = await BrowserFixture.start(name, ['kov']);
            for (const each of ['popup', 'help', 'options'])
                pages[each] = await fixture.browser.openExtensionPage(`${each}.html`);
            await fixture.until(async () => (await fixture.ask('settings')) !== null, 'the settings');
        }, { timeout: timeoutMs });
        after(() => fixture?.end(), { timeout: timeoutMs });

        const evaluate = (page, ...rest) => pages[page].evaluate(...rest);
        const textOf = (page, selector) => evaluate(page, each => document.querySelector(each)?.innerText ?? '', selector);
        const says = (page, selector, words) => fixture.until(
            async () => await textOf(page, selector) === words, `${selector} to say "${words}"`);
        /** Like a user: waits until the element can be clicked. */
        const click = (page, selector) => fixture.until(() => evaluate(page, each => {
            const found = document.querySelector(each);
            const isReady = found !== null && !found.disabled && found.checkVisibility();
            if (isReady)
                found.click();
            return isReady;
        }, selector), `${selector} to be ready`);
        const enter = (page, selector, value) => evaluate(page, (each, entered) => {
            const field = document.querySelector(each);
            field.value = entered;
            for (const type of ['input', 'change'])
                field.dispatchEvent(new Event(type, { bubbles: true }));
        }, selector, value);
        const outcomes = () => evaluate('popup', () => [...document.querySelectorAll('#downloads small')].map(
            each => each.textContent.split(' · ')[0]));
        const outcomesAre = (...words) => fixture.until(
            async () => JSON.stringify(await outcomes()) === JSON.stringify(words), `the popup to list ${words}`);
        async function download() {
            await fixture.page.bringToFront();
            await fixture.page.click('#file');
        }

        test('downloads are kept in the browser: the next one only, and all of an excluded server', { timeout: timeoutMs }, async () => {
            await click('popup', '#keepNext');
            await says('popup', '#state', 'The next download stays in the browser.');
            await download();
            await outcomesAre('Kept in the browser');
            strictEqual((await fixture.ask('keeping')).next, false);
            await fixture.ask('changePreferences', { changes: { 'notify.successes': true } });
            await download();
            await outcomesAre('Handed over to Kovalo', 'Kept in the browser');
            // Without a desktop Firefox closes a notification at once.
            const shown = () => fixture.extension.evaluate(async () =>
                [await chrome.action.getBadgeText({}), ...Object.keys(await chrome.notifications.getAll())].map(each => each.slice(0, 7)));
            const wanted = name === 'firefox' ? ['✓'] : ['✓', 'success'];
            await fixture.untilThere(shown, found => wanted.every(each => found.includes(each)));
            const url = fixture.server.pageUrl;
            deepStrictEqual(await fixture.ask('leaveSite', { url, leave: true }), { host: new URL(url).hostname, isLeft: true });
            await download();
            await outcomesAre('Kept in the browser', 'Handed over to Kovalo', 'Kept in the browser');
            strictEqual((await fixture.ask('leaveSite', { url, leave: false })).isLeft, false);
        });

        test('the user picks links of a page; none is requested before', { timeout: timeoutMs }, async () => {
            await fixture.page.evaluate(() => document.body.insertAdjacentHTML('beforeend',
                '<a href="/account/logout">bye</a> <a href="/read">a page</a>'));
            const asked = fixture.server.requests.length;
            await fixture.ask('chooseLinks', { tabId: await fixture.tabId(fixture.server.pageUrl) });
            const address = await fixture.untilThere(() => fixture.extension.evaluate(async () =>
                (await chrome.tabs.query({})).find(tab => tab.url?.includes('links.html#'))?.url), Boolean);
            pages.links = await fixture.browser.openExtensionPage(address.slice(address.indexOf('links.html')));
            const shown = () => evaluate('links', () => [...document.querySelectorAll('#links tr:not([hidden])')].map(
                row => `${row.querySelector('input').checked ? '+' : '-'} ${new URL(row.querySelector('label').title).pathname}`));
            const files = ['data.bin', 'list.m3u', 'one.bin', 'two.bin'].map(each => `+ /files/${each}`);
            deepStrictEqual(await fixture.untilThere(shown, found => found.length > 0),
                            [...files, '+ /moved', '- /account/logout', '+ /read']);
            await enter('links', '#kind', 'files');
            deepStrictEqual(await shown(), files);
            await enter('links', '#filter', 'nowhere');
            deepStrictEqual([await shown(), await textOf('links', '#noMatch')], [[], 'No link matches the filter.']);
            await enter('links', '#filter', 'ONE bin');
            strictEqual(await textOf('links', '#download'), 'Download (1)');
            strictEqual(fixture.server.requests.length, asked);
            await click('links', '#download');
            await says('links', '#said', 'Handed over to Kovalo: 1');
            await fixture.until(() => fixture.server.requests.length > asked, 'the application to ask for it');
            deepStrictEqual(fixture.server.requests.slice(asked), [{ method: 'GET', path: '/files/one.bin', allowed: true }]);
        });

        test('the help page runs a test download', { timeout: timeoutMs }, async () => {
            await click('help', '#test');
            await says('help', '#verdict', 'Everything works.');
            await fixture.until(() => existsSync(join(fixture.sandbox.downloads, 'kovalo-test.txt')), 'the test file');
        });

        test('options normalize input and explain what they reject', { timeout: timeoutMs }, async () => {
            const monitor = async () => (await fixture.ask('settings')).browser.monitor;
            const servers = '#option-monitor-skipServers';
            await enter('options', servers, 'https://Example.com/a/b, *.example.org [::1] .');
            await says('options', '#saved', 'Saved');
            strictEqual((await monitor()).skipServers, 'example.com example.org');
            deepStrictEqual((await textOf('options', `${servers}-understood`)).split('\n'), [
                'example.com', 'example.org', '[::1]: addresses with colons cannot be compared', '.: this would match everything']);
            // Masks are not mirrored on a page from right to left.
            deepStrictEqual(await evaluate('options', () => {
                document.documentElement.dir = 'rtl';
                const masks = [...document.querySelectorAll('textarea, .chips > li:not(.bad), .chips bdi')];
                const found = masks.map(each => globalThis.getComputedStyle(each).direction);
                document.documentElement.dir = 'ltr';
                return found;
            }), Array(6).fill('ltr'));
            await says('options', '#saved', '');
            await enter('options', '#option-monitor-skipSmallerThan + select', String(1024 ** 2));
            await enter('options', '#option-monitor-skipSmallerThan', '1.5');
            await fixture.until(async () => Number((await monitor()).skipSmallerThan) === 1.5 * 1024 ** 2, 'the size to hold');
            await enter('options', '#option-monitor-skipSmallerThan', '-1');
            ok(await evaluate('options', () => document.querySelector('#option-monitor-skipSmallerThan:invalid') !== null));
            strictEqual(Number((await monitor()).skipSmallerThan), 1.5 * 1024 ** 2);
        });

        test('accessibility: roles and names, and contrast in both colour schemes', { timeout: timeoutMs }, async () => {
            for (const page of Object.keys(pages)) {
                await evaluate(page, new Function(axe.source));
                deepStrictEqual(await evaluate(page, async () => {
                    const found = [];
                    for (const [scheme, rules] of [['light', {}], ['dark', { runOnly: ['color-contrast'] }]]) {
                        document.documentElement.style.colorScheme = scheme;
                        found.push(...(await globalThis.axe.run(rules)).violations.map(
                            ({ id, nodes }) => `${scheme}, ${id}: ${nodes.map(node => node.target).join(' ')}`));
                    }
                    return found;
                }), [], page);
            }
        });
    });
}
