// A download ends up in one place, whatever the application answers, and whenever the script or the
// browser ends. The host is a fake whose answer is selected by the download's URL.

import { deepStrictEqual, match, strictEqual } from 'node:assert';
import { chmodSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { after, before, describe, test } from 'node:test';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { DownloadSite } from '../../../tools/drivers/downloadsite.mjs';
import { BrowserFixture } from '../support/browserfixture.mjs';

const script = fileURLToPath(new URL('../support/scriptedhost.mjs', import.meta.url));

function useScript({ host }) {
    rmSync(host);
    writeFileSync(host, `#!/bin/sh\nexec '${process.execPath}' '${script}'\n`);
    chmodSync(host, 0o755);
}

/** The application's answer, where the file ends up, and what the popup says. */
const rows = [
    ['soon', 'application', ''],
    ['refusedSoon', 'browser', 'problemApplicationFailed'],
    ['added', 'application', ''],
    ['refused', 'browser', 'problemApplicationFailed'],
    ['neither', 'browser', 'problemApplicationUnclear'],
    ['declined', 'nowhere', ''],
    ['late', 'application', ''],
    ['late', 'both', 'outcomeBoth', 'complete'],
];
/** The answers that come when the browser has finished. */
const unheld = ['soon', 'refusedSoon'];
/** Hand-overs besides those rows, by the application's answer. */
const others = {
    silent: ['unclear', 'cancelled', 'restarted', 'posted', 'application', 'both'],
    refusedSoon: ['broken'],
    ends: ['browser'],
    late: ['in-the-end'],
};

for (const name of browserNames) {
    describe(`${name} and an application that answers strangely`, { timeout: 180_000 }, () => {
        let fixture;
        const files = [];
        const path = (row, state) => `/file/${row}-${state}`;
        const click = (row, state) => fixture.page.click(`[href^="${path(row, state)}"], [formaction^="${path(row, state)}"]`);
        const browserItem = async (row, state) => (await fixture.extension.evaluate(
            () => chrome.downloads.search({}))).find(each => each.url.includes(path(row, state)));
        before(async () => {
            const server = await DownloadSite.start();
            const all = [...rows.map(([row, state]) => [row, state, unheld.includes(row) ? '' : '&held']),
                         ...Object.entries(others).flatMap(([row, states]) => states.map(state => [row, state, '&held']))];
            server.pages['/page'] = all.map(([row, state, more]) => {
                const address = `${path(row, state)}?answer=${row}${more}`;
                return state === 'posted' ? `<form method="post"><input name="a"><button formaction="${address}">post</button></form>`
                    : `<p><a href="${address}">${row} ${state}</a></p>`;
            }).join('');
            fixture = await BrowserFixture.start(name, [], { server, prepare: useScript });
        });
        after(() => fixture?.end());
        const outcome = async (row, state) => (await fixture.ask('outcomes'))
            .find(each => each.name === `${row}-${state}`);
        const left = () => fixture.extension.evaluate(() => chrome.storage.local.get('handovers'));
        const offer = async (state, row = 'silent') => {
            await click(row, state);
            await fixture.untilThere(() => browserItem(row, state), Boolean);
            await fixture.untilThere(left, ({ handovers }) => handovers?.some(
                each => each.url.includes(path(row, state)) && each.stage === 'offered'));
        };
        const lets = async (row, state) => {
            if (!unheld.includes(row))
                fixture.server.release(path(row, state));
            files.push(path(row, state));
        };

        test('captions follow the settings; lost downloads and store failures are reported', async () => {
            await fixture.untilThere(() => readFileSync(join(fixture.sandbox.temporary, 'asked'), 'utf8'),
                                   types => /^query_settings\n[^]*^ui_strings$/m.test(types));
            await fixture.untilThere(() => fixture.ask('outcomes'), outcomes => outcomes.some(({ name: file, state, detail }) =>
                `${file} ${state} ${detail}` === 'gone.bin lost why'));
            for (const [error, words] of [['busy', /^Another program /], ['failure', / cannot be stored /], ['', /^$/]]) {
                await fixture.ask('changeSettings', { changes: { 'monitor.skipServers': error } });
                await fixture.untilThere(() => fixture.extension.evaluate(() => {
                    const { hidden, textContent } = document.getElementById('store');
                    return { hidden, textContent };
                }), ({ hidden, textContent }) => hidden === !error && words.test(textContent));
            }
        });

        test('each answer', async () => {
            for (const [row, state] of rows)
                await click(row, state);
            // The browser continues while the application decides.
            const late = await fixture.untilThere(() => browserItem('late', 'both'), item => item && !item.paused);
            strictEqual(late.state, 'in_progress');
            await lets('late', 'both');
            for (const [row, state, reason] of rows) {
                const found = await fixture.untilThere(() => outcome(row, state), Boolean);
                deepStrictEqual([found.state, found.reason], [state, reason], row);
                if (state === 'browser')
                    await lets(row, state);
                strictEqual(fixture.server.asked(path(row, state)).length, 1);
            }
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
            await fixture.untilBrowserLists(files.length);
        });

        test('the application answers after the timeout', async () => {
            // Once, the script waits for an answer for 100 ms instead of 60 s.
            await fixture.browser.inScript(fixture.extension, background => {
                const { setTimeout } = background;
                background.setTimeout = (act, time, ...rest) => {
                    if (time !== 60_000)
                        return setTimeout.call(background, act, time, ...rest);
                    background.setTimeout = setTimeout;
                    return setTimeout.call(background, act, 100, ...rest);
                };
            });
            await click('late', 'in-the-end');
            await fixture.untilThere(async () => (await fixture.ask('outcomes')).filter(each => each.name === 'late-in-the-end')
                .map(each => `${each.state} ${each.reason}`).join(), told => told === 'application ,browser problemApplicationSilent');
            await fixture.untilThere(() => browserItem('late', 'in-the-end'), item => !item);
            strictEqual(fixture.server.asked(path('late', 'in-the-end')).length, 1);
        });

        test('the script ends before the answer', async () => {
            await offer('unclear');
            await fixture.browser.stopScript();
            await fixture.ask('status'); // any event starts the script
            await lets('silent', 'unclear');
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
            strictEqual((await fixture.untilThere(() => outcome('silent', 'unclear'), Boolean)).state, 'unclear');
            match((await fixture.ask('status')).problem, /goes on with silent-unclear/);
            const isOver = ({ handovers }) => handovers.length === 0;
            await fixture.untilThere(left, isOver);
            // A download that the user cancels meanwhile stays cancelled.
            await offer('cancelled');
            await fixture.browser.stopScript();
            // Chromium's list is a page, which would start the script; and Firefox cannot retry what an extension cancelled.
            if (name === 'chromium')
                await fixture.extension.evaluate(id => chrome.downloads.cancel(id), (await browserItem('silent', 'cancelled')).id);
            else
                await fixture.browser.actInList('silent-cancelled', 'cancel');
            await fixture.ask('status');
            await fixture.untilThere(left, isOver);
            strictEqual((await browserItem('silent', 'cancelled')).state, 'interrupted');
            strictEqual(await outcome('silent', 'cancelled'), undefined);
            strictEqual(fixture.server.asked(path('silent', 'cancelled')).length, 1);
            // Unless the user retries it in the browser's list.
            await fixture.browser.actInList('silent-cancelled', 'retry');
            files.push(path('silent', 'cancelled'));
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
            strictEqual(await outcome('silent', 'cancelled'), undefined);
            strictEqual(fixture.server.asked(path('silent', 'cancelled')).length, 2);
        });

        test('the script ends after the application has taken it', async () => {
            await offer('application');
            await offer('both');
            await lets('silent', 'both');
            // As the user can do in the browser's list.
            await fixture.extension.evaluate(id => chrome.downloads.resume(id).catch(() => {}), (await browserItem('silent', 'both')).id);
            await fixture.untilThere(() => browserItem('silent', 'both'), ({ state }) => state === 'complete');
            await fixture.browser.stopScript();
            await fixture.extension.evaluate(async () => {
                const { handovers } = await chrome.storage.local.get('handovers');
                await chrome.storage.local.set({ handovers: handovers.map(each => ({ ...each, stage: 'taken' })) });
            });
            await fixture.ask('status');
            await fixture.untilThere(() => outcome('silent', 'both'), told => told?.state === 'both');
            await fixture.untilThere(() => browserItem('silent', 'application'), item => !item);
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
        });

        test('the connection breaks and the application refuses, or the host ends', async () => {
            await offer('broken', 'refusedSoon');
            fixture.server.breakOff(path('refusedSoon', 'broken'));
            files.push(path('refusedSoon', 'broken'));
            strictEqual((await fixture.untilThere(() => outcome('refusedSoon', 'broken'), Boolean)).state, 'browser');
            await click('ends', 'browser');
            strictEqual((await fixture.untilThere(() => outcome('ends', 'browser'), Boolean)).reason, 'problemHostStopped');
            await lets('ends', 'browser');
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
        });

        test('the browser ends before the answer', async () => {
            await offer('restarted');
            await offer('posted');
            await fixture.browser.close();
            await fixture.launch(name);
            files.push(path('silent', 'restarted'));
            // Firefox itself requests it again, with a GET.
            if (name === 'firefox')
                files.push(path('silent', 'posted'));
            await fixture.untilDownloaded(fixture.sandbox.downloads, files);
            strictEqual((await fixture.untilThere(() => outcome('silent', 'restarted'), Boolean)).state, 'unclear');
            strictEqual((await fixture.untilThere(() => outcome('silent', 'posted'), Boolean)).state, 'lost');
            strictEqual(fixture.server.asked(path('silent', 'posted')).filter(each => each.method === 'POST').length, 1);
        });
    });
}
