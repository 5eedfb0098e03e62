#!/usr/bin/env node
// What the extension costs in real browsers, beside an extension that does next to nothing, in the same browser
// at the same time: until a download is with the host, for a page of many requests, and at the script's start.

import { chmodSync, existsSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { browserNames } from '../tools/drivers/browsers.mjs';
import { inFirefoxItself } from '../tools/drivers/firefoxwindow.mjs';
import { until } from '../tools/drivers/hostprocess.mjs';
import { manifestName } from '../tests/e2e/support/registered.mjs';
import { BrowserFixture } from '../tests/e2e/support/browserfixture.mjs';

const downloads = 40;
const requests = 5000;
const atOnce = 50;
const starts = 20;
/** Entries in the extension's storage that nobody asks for, of 1 KiB each. */
const strangers = 4000;
const folderOf = { chromium: '.config/chromium/NativeMessagingHosts', firefox: '.mozilla/native-messaging-hosts' };
const here = path => fileURLToPath(new URL(path, import.meta.url));
const half = Buffer.alloc(32 * 1024);
const now = () => performance.timeOrigin + performance.now();

class Site {
    /** By path: when an answer was sent, and what sends the rest of it. */
    answers = new Map();
    requests = [];
    #server = createServer(({ url }, response) => {
        if (url === '/page')
            response.writeHead(200, { 'Content-Type': 'text/html' }).end(
                Array.from({ length: downloads }, (_, index) => `<a id="f${index}" href="/file/${index}">${index}</a> `).join(''));
        else if (!url.startsWith('/file/'))
            response.writeHead(200, { 'Content-Type': 'text/plain' }).end('x');
        else {
            response.writeHead(200, { 'Content-Type': 'application/octet-stream', 'Content-Length': 2 * half.length }).write(half);
            this.answers.set(url, { time: now(), finish: () => response.end(half) });
        }
    });

    static async start() {
        const self = new Site();
        await new Promise(resolve => { self.#server.listen(0, '127.0.0.1', resolve); });
        return self;
    }

    get origin() { return `http://127.0.0.1:${this.#server.address().port}`; }
    get pageUrl() { return `${this.origin}/page`; }
    stop() { this.#server.closeAllConnections(); this.#server.close(); }
}

const sorted = values => [...values].sort((a, b) => a - b);
const median = values => sorted(values)[Math.floor(values.length / 2)];
const inMs = values => `${median(values).toFixed(1).padStart(7)} ms  (${sorted(values)[Math.floor(values.length * 0.9)].toFixed(1)} in the slowest tenth)`;
const row = (what, figure) => console.log(`  ${what.padEnd(58)} ${figure}`);

class Bench {
    static async start(name) {
        const self = new Bench();
        self.name = name;
        self.site = await Site.start();
        self.fixture = await BrowserFixture.start(name, [], { server: self.site, prepare: ({ host }) => {
            rmSync(host);
            writeFileSync(host, `#!/bin/sh\nexec '${process.execPath}' '${here('stampinghost.mjs')}'\n`);
            chmodSync(host, 0o755);
        } });
        const id = await self.browser.installExtension(here('floorextension'));
        const manifest = join(self.fixture.sandbox.home, folderOf[name], manifestName);
        const { allowed_origins: origins, allowed_extensions: ids, ...more } = JSON.parse(readFileSync(manifest));
        writeFileSync(manifest, JSON.stringify({
            ...more,
            ...origins && { allowed_origins: [...origins, `chrome-extension://${id}/`] },
            ...ids && { allowed_extensions: [...ids, 'floor@kovalo.test'] },
        }));
        await self.fixture.until(async () => (await self.fixture.ask('settings')) !== null, 'the settings');
        await until(() => self.stamps('hello').length > 0, 'the floor to reach the host');
        return self;
    }

    get browser() { return this.fixture.browser.browser; }

    stamps(type) {
        const file = join(this.fixture.sandbox.temporary, 'stamps');
        return (existsSync(file) ? readFileSync(file, 'utf8') : '').split('\n').slice(0, -1).map(JSON.parse).filter(each => each.type === type);
    }

    async stampOf(type, url) {
        const find = () => this.stamps(type).find(each => each.url === url);
        await until(find, `${type} for ${url}`);
        return find().time;
    }

    async measureDownloads() {
        const waiting = { floor: [], create_downloads: [] };
        const more = [];
        for (let index = 0; index < downloads; ++index) {
            const path = `/file/${index}`;
            await this.fixture.page.click(`#f${index}`);
            const [floor, task] = await Promise.all(Object.keys(waiting).map(type => this.stampOf(type, this.site.origin + path)));
            const { time, finish } = this.site.answers.get(path);
            finish();
            waiting.floor.push(floor - time);
            waiting.create_downloads.push(task - time);
            more.push(task - floor);
        }
        row('the server\'s answer to the floor\'s message at the host', inMs(waiting.floor));
        row('the server\'s answer to the task at the host', inMs(waiting.create_downloads));
        row('the task after the floor\'s message', inMs(more));
    }

    /** The heaps of the script and of the floor's in KiB, after a collection; Chromium only. */
    async heaps() {
        const workers = this.browser.targets().filter(each => each.type() === 'service_worker' && each.url().startsWith('chrome-extension:'));
        const found = {};
        for (const target of workers) {
            const { client } = await target.worker();
            await client.send('HeapProfiler.collectGarbage');
            const { usedSize } = await client.send('Runtime.getHeapUsage');
            found[target.url().startsWith(this.fixture.browser.address('')) ? 'own' : 'floor'] = usedSize / 1024;
        }
        return found;
    }

    /** The processor time of the extensions' processes, the floor's included, in ms. */
    async processorTime() {
        if (this.name === 'firefox') {
            return inFirefoxItself(this.browser, async () => {
                // eslint-disable-next-line no-undef
                const { children } = await ChromeUtils.requestProcInfo();
                return children.find(each => each.type === 'extension').cpuTime / 1e6;
            });
        }
        const own = await this.browser.target().createCDPSession();
        const { processInfo } = await own.send('SystemInfo.getProcessInfo');
        await own.detach();
        return processInfo.filter(({ id }) => readFileSync(`/proc/${id}/cmdline`, 'utf8').includes('--extension-process'))
            .reduce((sum, { cpuTime }) => sum + 1000 * cpuTime, 0);
    }

    async measureRequests(what, changes) {
        await this.fixture.ask('changeSettings', { changes });
        const page = await this.browser.newPage();
        await page.goto(`${this.site.origin}/plain`);
        const before = await this.processorTime();
        const heapsBefore = this.name === 'chromium' && await this.heaps();
        await page.evaluate(async (count, parallel) => {
            for (let index = 0; index < count; index += parallel)
                await Promise.all(Array.from({ length: parallel }, async (_, each) => (await fetch(`/r/${index + each}`)).text()));
        }, requests, atOnce);
        await this.fixture.ask('status'); // what came before has been handled then
        row(`${what}: processor time, with the floor's`, `${((await this.processorTime()) - before).toFixed(0).padStart(7)} ms`);
        if (heapsBefore) {
            const heaps = await this.heaps();
            for (const each of ['own', 'floor'])
                row(`${what}: heap, ${each}`, `${heaps[each].toFixed(0).padStart(7)} KiB  (${(heaps[each] - heapsBefore[each]).toFixed(0)} more than before)`);
        }
        await page.close();
    }

    async measureStarts() {
        const times = { empty: [], full: [] };
        await this.fixture.ask('changeSettings', { changes: { 'monitor.video.enable': false } }); // pages would start it, too
        for (let index = 0; index < starts; ++index) {
            const state = index % 2 ? 'full' : 'empty';
            await this.fixture.extension.evaluate(async (isFull, count) => {
                const names = Array.from({ length: count }, (_, each) => `stranger${each}`);
                if (isFull)
                    await chrome.storage.local.set(Object.fromEntries(names.map(each => [each, 'x'.repeat(1024)])));
                else
                    await chrome.storage.local.remove(names);
            }, state === 'full', strangers);
            const known = this.stamps('query_settings').length;
            await this.fixture.browser.stopScript();
            const began = now();
            await this.fixture.ask('status');
            await until(() => this.stamps('query_settings').length > known, 'the script to ask for the settings');
            times[state].push(this.stamps('query_settings').at(-1).time - began);
        }
        row('the script\'s start until it asks for the settings', inMs(times.empty));
        row(`the same with ${strangers} KiB of others' in storage.local`, inMs(times.full));
    }

    async end() { await this.fixture.end(); }
}

for (const name of browserNames) {
    const bench = await Bench.start(name);
    try {
        console.log(`${await bench.fixture.browser.version()}, ${downloads} downloads, ${requests} requests`);
        await bench.measureDownloads();
        await bench.measureRequests('catching off', { 'monitor.enable': false });
        await bench.measureRequests('catching on', { 'monitor.enable': true });
        await bench.measureRequests('videos looked for', { 'monitor.video.enable': true });
        await bench.measureStarts();
    } finally {
        await bench.end();
    }
}
