// The host, started, used and ended by real browsers.

import { deepStrictEqual, notStrictEqual, strictEqual } from 'node:assert';
import { renameSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { ExtendedBrowser, browserNames, hostProgram } from '../../../tools/drivers/browsers.mjs';
import { converse, farewell } from '../../../tools/drivers/conversation.mjs';
import { until } from '../../../tools/drivers/hostprocess.mjs';
import { Sandbox } from '../../../tools/drivers/sandbox.mjs';

for (const name of browserNames) {
    describe(name, { timeout: 180_000 }, () => {
        let sandbox;
        let browser;
        let popup;
        before(async () => {
            sandbox = new Sandbox();
            browser = await ExtendedBrowser.launch(name, sandbox);
            popup = await browser.openExtensionPage('popup.html');
        });
        after(async () => {
            await browser?.close();
            if (sandbox)
                await until(() => sandbox.running(hostProgram).length === 0, 'the hosts to end with their browser');
            sandbox?.remove();
        });
        const status = () => popup.evaluate(
            () => document.getElementById('problemText').textContent || document.getElementById('state').textContent);
        const statusIs = pattern => until(async () => pattern.test(await status()), `the popup to say ${pattern}`);

        test('the extension starts the host and shows that it works', async () => {
            await statusIs(/^Downloads go to Kovalo\.$/);
            strictEqual(sandbox.running(hostProgram).length, 1);
        });

        test('the host answers an extension, and ends on "shutdown"', async () => {
            const port = await browser.openPort(popup);
            await converse(task => port.ask(task));
            await port.post(farewell);
            await port.hostEnded();
            await until(() => port.isDisconnected(), 'the browser to close the port');
        });

        test('the host ends when its port is closed', async () => {
            const port = await browser.openPort(popup);
            strictEqual((await port.ask({ id: '1', type: 'key_state' })).keyCode, 45);
            await port.close();
            await port.hostEnded();
        });

        test('a long answer and characters of every kind reach the extension', async () => {
            const port = await browser.openPort(popup);
            const id = 'é日本\u{1f600}"\\\u0001'.repeat(10_000);
            strictEqual((await port.ask({ id, type: 'window' })).id, id);
            await port.close();
            await port.hostEnded();
        });

        test('the extension restarts a killed host', async () => {
            const [first] = sandbox.running(hostProgram);
            process.kill(first, 'SIGKILL');
            await until(() => sandbox.running(hostProgram).some(pid => pid !== first), 'another host');
            await statusIs(/^Downloads go to Kovalo/);
            notStrictEqual(sandbox.running(hostProgram)[0], first);
        });

        test('concurrent changes of options by the host and the user are both kept', async () => {
            deepStrictEqual(await popup.evaluate(async url => {
                const { Settings } = await import(url);
                const record = monitor => ({ browser: { menu: {}, monitor }, locale: '' });
                const posted = [];
                const settings = new Settings({
                    ask: async (_type, task) => {
                        if (posted.push(task.post_settings.browser.monitor) === 1)
                            settings.accept({ settings: record({ enable: true, skipServers: 'new' }) });
                        return { error: '' };
                    },
                });
                settings.accept({ settings: record({ enable: true, skipServers: 'old' }) });
                await settings.change({ 'monitor.enable': false });
                return [...posted, settings.current.browser.monitor];
            }, browser.address('lib/settings.js')), [
                { enable: false, skipServers: 'old' },
                { enable: false, skipServers: 'new' },
                { enable: false, skipServers: 'new' },
            ]);
        });

        test('a missing host is reported to the user, and found again on retry', async () => {
            renameSync(sandbox.host, `${sandbox.host}.away`);
            const [pid] = sandbox.running(`${hostProgram}.away`);
            process.kill(pid, 'SIGKILL');
            const retry = () => popup.evaluate(() => document.getElementById('retry').click());
            await statusIs(/host stopped/);
            await retry();
            await statusIs(/host (is not installed|could not be started)/);
            strictEqual(await popup.evaluate(() => chrome.action.getBadgeText({})), '!');
            renameSync(`${sandbox.host}.away`, sandbox.host);
            await retry();
            await statusIs(/^Downloads go to Kovalo/);
            strictEqual(await popup.evaluate(() => chrome.action.getBadgeText({})), '');
        });
    });
}
