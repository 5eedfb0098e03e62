// A large file that is caught in a browser arrives intact despite interruptions, and no part of it is
// fetched twice. KOVALO_FULL=1 tests it with 1 GiB, and in each browser.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { createHash } from 'node:crypto';
import { createReadStream, readdirSync, renameSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { pipeline } from 'node:stream/promises';
import { test } from 'node:test';
import { browserNames } from '../../../tools/drivers/browsers.mjs';
import { ConfigurableServer, hashOf } from '../support/configurableserver.mjs';
import { BrowserFixture } from '../support/browserfixture.mjs';

const isFull = process.env.KOVALO_FULL === '1';
const mebibyte = 1 << 20;
const size = (isFull ? 1024 : 64) * mebibyte;
/** Bytes per second for each connection. */
const rate = size / 12;
const fakeClock = '/usr/lib/x86_64-linux-gnu/faketime/libfaketime.so.1';

/** Gives the application a fake calendar clock. Returns a function that sets it: "+0", "-30d". */
function fakeItsClock(sandbox) {
    const clock = join(sandbox.folder, 'clock');
    const program = join(sandbox.programs, 'kov');
    renameSync(program, `${program}-real`);
    writeFileSync(program, `#!/bin/sh\nexport LD_PRELOAD='${fakeClock}' FAKETIME_TIMESTAMP_FILE='${clock}'\n`
        + `export FAKETIME_NO_CACHE=1 FAKETIME_DONT_FAKE_MONOTONIC=1\nexec '${program}-real' "$@"\n`, { mode: 0o755 });
    const set = time => writeFileSync(clock, time);
    set('+0');
    return set;
}

for (const name of isFull ? browserNames : ['chromium']) {
    test(`a large file from ${name}`, { timeout: 600_000 }, async context => {
        const server = await ConfigurableServer.start();
        server.pageUrl = server.respond('/page', {
            status: 200, headers: { 'Content-Type': 'text/html' }, body: '<a id="file" href="/large.bin">large</a>',
        });
        // The first of these is the browser's, until it gives up the download.
        const breaks = [1, 2, 3, 4, 5].map(count => size * count / 40);
        server.respond('/large.bin', { size, rate, breaks: [size, ...breaks] });
        let setClock;
        const fixture = await BrowserFixture.start(name, ['kov'], { server, prepare: sandbox => { setClock = fakeItsClock(sandbox); } });
        try {
            const job = () => JSON.parse(fixture.application('jobs', '--json')).at(-1);
            await fixture.page.click('#file');
            await fixture.until(() => fixture.sandbox.running('kov-real').length > 0, 'the application to be started');
            await fixture.untilThere(job, Boolean);
            const times = ['+400d', '-4000d', '+0'];
            for (const [index, time] of times.entries()) {
                const { receivedBytes } = job();
                const wanted = Math.min(size * 0.95, receivedBytes + size / 6);
                await fixture.untilThere(job, each => each.receivedBytes >= wanted || each.state === 'finished');
                setClock(time);
                await fixture.until(() => job().receivedBytes > wanted, 'progress after the jump of the clock');
                for (const pid of fixture.sandbox.running('kov-real'))
                    process.kill(pid, 'SIGKILL');
                context.diagnostic(`killed for the ${index + 1}. time at ${job().receivedBytes / mebibyte} MiB`);
            }
            const { state, error, path } = await fixture.untilThere(job, each => ['finished', 'failed'].includes(each.state));
            deepStrictEqual([state, error, readdirSync(fixture.sandbox.downloads)], ['finished', '', ['large.bin']]);
            const hash = createHash('sha256');
            await pipeline(createReadStream(path), hash);
            strictEqual(hash.digest('hex'), hashOf('/large.bin', size));

            const [browsers, first, ...others] = server.requestsTo('/large.bin');
            ok(others.length >= breaks.length + times.length, `${others.length} requests to go on`);
            ok(others.every(({ headers }) => headers.range && headers['if-range']), 'none begins anew');
            const sent = [first, ...others].reduce((sum, each) => sum + each.sent, 0);
            context.diagnostic(`${sent / size} of the size was sent, in ${others.length + 1} requests; `
                + `${browsers.sent / mebibyte} MiB to the browser`);
            // Data in flight, and data received since the progress was stored, on 4 connections.
            ok(sent < size + times.length * 4 * 2 * rate, `${sent} bytes were sent`);
        } finally {
            await fixture.end();
        }
    });
}
