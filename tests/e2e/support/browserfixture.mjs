// A browser on a page of the web server, with a page of the extension beside it, and the application.

import { execFileSync } from 'node:child_process';
import { existsSync, readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { ExtendedBrowser } from '../../../tools/drivers/browsers.mjs';
import { until } from '../../../tools/drivers/hostprocess.mjs';
import { Sandbox } from '../../../tools/drivers/sandbox.mjs';
import { WebServer } from '../../../tools/drivers/webserver.mjs';

/** Whether a file is complete: these are the suffixes of files that are still being written. */
const isWhole = file => !/\.(kovdownload|crdownload|part)$/.test(file);

/** The bytes of a file; empty if it has just been renamed. */
function readIfThere(path) {
    try {
        return readFileSync(path);
    } catch {
        return Buffer.alloc(0);
    }
}

export class BrowserFixture {
    /**
     * @param {string} name the browser's
     * @param {string[]} programs the programs beside the host
     * @param {object} options server: instead of the usual one; prepare: called with the sandbox before
     *     the browser starts; others are those of ExtendedBrowser.launch()
     */
    static async start(name, programs, { server, prepare, ...options } = {}) {
        const self = new BrowserFixture();
        self.sandbox = new Sandbox(programs);
        self.server = server;
        prepare?.(self.sandbox);
        try {
            await self.launch(name, options);
        } catch (error) {
            await self.end();
            throw error;
        }
        return self;
    }

    /** Can be called again after the browser was closed. */
    async launch(name, options) {
        this.server ??= await WebServer.start();
        this.browser = await ExtendedBrowser.launch(name, this.sandbox, options);
        this.extension = await this.browser.openExtensionPage('options.html');
        await this.until(async () => (await this.ask('status')).version !== '', 'the host to answer');
        this.page = await this.browser.browser.newPage();
        await this.page.goto(this.server.pageUrl);
    }

    async end() {
        await this.browser?.close();
        await this.server?.stop();
        this.sandbox.remove();
    }

    /** The id of the tab that shows a page. */
    tabId(address) {
        return this.extension.evaluate(
            async url => (await chrome.tabs.query({})).find(tab => tab.url === url).id, address);
    }

    /** Right-clicks an element of a page and chooses an entry of the extension. */
    async chooseMenu(page, selector, entry) { await this.browser.chooseMenu(page, await page.$(selector), entry); }

    /** Sends a request to the extension's background script, as its pages do. */
    async ask(request, members = {}) {
        const answer = await this.extension.evaluate(
            message => chrome.runtime.sendMessage(message), { request, ...members });
        return answer.value;
    }

    /** Repeats a request until the answer is as wanted. Resolves with that answer. */
    async untilThere(ask, isWished) {
        let found;
        await this.until(async () => isWished(found = await ask()), String(isWished));
        return found;
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

    /** Resolves once a folder contains exactly the files of these paths, whatever their names. */
    async untilDownloaded(folder, paths) {
        await this.until(() => {
            const files = existsSync(folder) ? readdirSync(folder) : [];
            const missing = [...paths];
            for (const file of files) {
                const content = isWhole(file) ? readIfThere(join(folder, file)) : Buffer.alloc(0);
                const index = missing.findIndex(path => this.server.content(path).equals(content));
                if (index < 0)
                    return false;
                missing.splice(index, 1);
            }
            return missing.length === 0;
        }, `${paths} to arrive in ${folder}`);
    }

    /** Resolves once the browser's list of downloads has that length. */
    async untilBrowserLists(count) {
        await this.until(async () =>
            (await this.extension.evaluate(() => chrome.downloads.search({}))).length === count,
        `the browser to list ${count} downloads`);
    }

    application(...args) {
        return execFileSync(join(this.sandbox.programs, 'kov'), args, {
            env: this.sandbox.environment(),
            encoding: 'utf8',
            timeout: 60_000, // longer than any timeout of the tests
        }).trim();
    }
}
