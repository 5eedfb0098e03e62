// Downloads caught in real browsers arrive in the application, or stay where they are to stay.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { execFileSync } from 'node:child_process';
import { existsSync, readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { ExtendedBrowser, browserDownloads, browserNames } from '../support/browsers.mjs';
import { until } from '../support/hostprocess.mjs';
import { Sandbox } from '../support/sandbox.mjs';
import { WebServer } from '../support/webserver.mjs';

/** The bytes of a file; none when it has just been renamed. */
function readIfThere(path) {
    try {
        return readFileSync(path);
    } catch {
        return Buffer.alloc(0);
    }
}

/** A browser on a page with downloads, and a page of the extension beside it. */
class Visit {
    static async start(name, programs) {
        const self = new Visit();
        self.sandbox = new Sandbox(programs);
        self.server = await WebServer.start();
        self.browser = await ExtendedBrowser.launch(name, self.sandbox);
        self.extension = await self.browser.openExtensionPage('options.html');
        await self.until(async () => (await self.ask('status')).version !== '', 'the host to answer');
        self.page = await self.browser.browser.newPage();
        await self.page.goto(self.server.pageUrl);
        return self;
    }

    async end() {
        await this.browser?.close();
        await this.server?.stop();
        this.sandbox.remove();
    }

    /** Asks the extension's background script, as its pages do. */
    async ask(request, members = {}) {
        const answer = await this.extension.evaluate(
            message => chrome.runtime.sendMessage(message), { request, ...members });
        return answer.value;
    }

    async until(condition, what) {
        await until(condition, what).catch(async error => {
            const status = JSON.stringify(await this.ask('status').catch(String));
            const items = await this.extension.evaluate(() => chrome.downloads.search({})).catch(String);
            throw new Error(`${error.message}\nrequests: ${JSON.stringify(this.server.requests)}\n`
                + `status: ${status}\nbrowser: ${JSON.stringify(items)}\n`
                + `application: ${this.sandbox.running('kov').length && this.application('jobs')}`);
        });
    }

    /** Resolves once a folder holds the files of these paths, whatever their names, and no others. */
    async untilDownloaded(folder, paths) {
        await this.until(() => {
            const files = existsSync(folder) ? readdirSync(folder) : [];
            const missing = [...paths];
            for (const file of files) {
                const content = readIfThere(join(folder, file));
                const index = missing.findIndex(path => WebServer.content(path).equals(content));
                if (index < 0)
                    return false;
                missing.splice(index, 1);
            }
            return missing.length === 0;
        }, `${paths} to arrive in ${folder}`);
    }

    /** Resolves once the browser's list of downloads is as long. */
    async untilBrowserLists(count) {
        await this.until(async () =>
            (await this.extension.evaluate(() => chrome.downloads.search({}))).length === count,
        `the browser to list ${count} downloads`);
    }

    application(...args) {
        return execFileSync(join(this.sandbox.programs, 'kov'), args, {
            env: this.sandbox.environment(),
            encoding: 'utf8',
        }).trim();
    }
}

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

        // On a loaded machine Firefox once told of the download before it told of the request, and the
        // application was given the address without the body. Open until the extension waits for it.
        const todo = name === 'firefox' && 'a posted form may lose its body on a loaded machine';
        test('a form that posts', { todo }, async () => {
            await visit.page.click('#form button');
            await visit.untilDownloaded(visit.sandbox.downloads, [...arrived, '/report']);
            arrived.push('/report');
            await visit.untilBrowserLists(0);
        });

        test('all links of a page', async () => {
            const tabId = await visit.extension.evaluate(
                async url => (await chrome.tabs.query({})).find(tab => tab.url === url).id, visit.server.pageUrl);
            await visit.ask('downloadAll', { tabId });
            arrived.push('/files/data.bin', '/files/list.m3u', '/files/one.bin', '/files/two.bin');
            await visit.untilDownloaded(visit.sandbox.downloads, arrived);
            strictEqual((await visit.ask('status')).problem, null);
        });

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
