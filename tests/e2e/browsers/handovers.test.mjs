// A download is in one place, whatever the application says, and whenever the script or the browser
// ends. The host is one that answers as each address wishes.

import { deepStrictEqual, match, strictEqual } from 'node:assert';
import { chmodSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { after, before, describe, test } from 'node:test';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { DownloadSite } from '../../../tools/drivers/downloadsite.mjs';
import { Visit } from '../support/visit.mjs';

const script = fileURLToPath(new URL('../support/scriptedhost.mjs', import.meta.url));

function useScript({ host }) {
    rmSync(host);
    writeFileSync(host, `#!/bin/sh\nexec '${process.execPath}' '${script}'\n`);
    chmodSync(host, 0o755);
}

/** What the application does, where the file is then, and what the user is told. */
const rows = [
    ['added', 'application', ''],
    ['refused', 'browser', 'problemApplicationFailed'],
    ['neither', 'browser', 'problemApplicationUnclear'],
    ['declined', 'nowhere', ''],
    ['late', 'application', ''],
    ['late', 'both', 'outcomeBoth', 'complete'],
];

for (const name of browserNames) {
    describe(`${name} and an application that answers strangely`, { timeout: 180_000 }, () => {
        let visit;
        const files = [];
        const path = (row, state) => `/file/${row}-${state}`;
        const click = (row, state) => visit.page.click(`[href^="${path(row, state)}"]`);
        const browserItem = async (row, state) => (await visit.extension.evaluate(
            () => chrome.downloads.search({}))).find(each => each.url.includes(path(row, state)));
        before(async () => {
            const server = await DownloadSite.start();
            const all = [...rows, ...['unclear', 'cancelled', 'restarted'].map(state => ['silent', state])];
            server.pages['/page'] = all.map(([row, state]) =>
                `<p><a href="${path(row, state)}?answer=${row}&held">${row} ${state}</a>`).join('');
            visit = await Visit.start(name, [], { server, prepare: useScript });
        });
        after(() => visit?.end());
        const outcome = async (row, state) => (await visit.ask('outcomes'))
            .find(each => each.name === `${row}-${state}`);
        const offer = async state => {
            await click('silent', state);
            await visit.untilThere(() => browserItem('silent', state), Boolean);
            await visit.untilThere(() => visit.extension.evaluate(() => chrome.storage.local.get('handovers')),
                                   ({ handovers }) => handovers?.some(each => each.stage === 'offered'));
        };
        const lets = async (row, state) => {
            visit.server.release(path(row, state));
            files.push(path(row, state));
        };

        test('captions are asked for when the settings are there, and what was lost or is not stored is told', async () => {
            await visit.untilThere(() => readFileSync(join(visit.sandbox.temporary, 'asked'), 'utf8'),
                                   types => /^query_settings\n[^]*^ui_strings$/m.test(types));
            await visit.untilThere(() => visit.ask('outcomes'), outcomes => outcomes.some(({ name: file, state, detail }) =>
                `${file} ${state} ${detail}` === 'gone.bin lost why'));
            for (const [error, words] of [['busy', /^Another program /], ['failure', / cannot be stored /], ['', /^$/]]) {
                await visit.ask('changeSettings', { changes: { 'monitor.skipServers': error } });
                await visit.untilThere(() => visit.extension.evaluate(() => {
                    const { hidden, textContent } = document.getElementById('store');
                    return { hidden, textContent };
                }), ({ hidden, textContent }) => hidden === !error && words.test(textContent));
            }
        });

        test('each answer', async () => {
            for (const [row, state] of rows)
                await click(row, state);
            // The browser continues while the application decides.
            const late = await visit.untilThere(() => browserItem('late', 'both'), item => item && !item.paused);
            strictEqual(late.state, 'in_progress');
            await lets('late', 'both');
            for (const [row, state, reason] of rows) {
                const found = await visit.untilThere(() => outcome(row, state), Boolean);
                deepStrictEqual([found.state, found.reason], [state, reason], row);
                if (state === 'browser')
                    await lets(row, state);
                strictEqual(visit.server.asked(path(row, state)).length, 1);
            }
            await visit.untilDownloaded(visit.sandbox.downloads, files);
            await visit.untilBrowserLists(files.length);
        });

        test('the script ends before the answer', async () => {
            await offer('unclear');
            await visit.browser.stopScript();
            await visit.ask('status'); // whatever happens next starts the script
            await lets('silent', 'unclear');
            await visit.untilDownloaded(visit.sandbox.downloads, files);
            strictEqual((await visit.untilThere(() => outcome('silent', 'unclear'), Boolean)).state, 'unclear');
            match((await visit.ask('status')).problem, /goes on with silent-unclear/);
            const isOver = ({ handovers }) => handovers.length === 0;
            const left = () => visit.extension.evaluate(() => chrome.storage.local.get('handovers'));
            await visit.untilThere(left, isOver);
            // What the user cancels meanwhile stays cancelled.
            await offer('cancelled');
            await visit.browser.stopScript();
            const { id } = await browserItem('silent', 'cancelled');
            await visit.extension.evaluate(each => chrome.downloads.cancel(each), id);
            await visit.ask('status');
            await visit.untilThere(left, isOver);
            strictEqual((await browserItem('silent', 'cancelled')).state, 'interrupted');
            strictEqual(await outcome('silent', 'cancelled'), undefined);
            strictEqual(visit.server.asked(path('silent', 'cancelled')).length, 1);
        });

        test('the browser ends before the answer', async () => {
            await offer('restarted');
            await visit.browser.close();
            await visit.launch(name);
            files.push(path('silent', 'restarted'));
            await visit.untilDownloaded(visit.sandbox.downloads, files);
            strictEqual((await visit.untilThere(() => outcome('silent', 'restarted'), Boolean)).state, 'unclear');
        });
    });
}
