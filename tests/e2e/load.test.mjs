// Load: many tasks at once, very large ones, hundreds of thousands, and more than memory allows.

import { deepStrictEqual, match, ok, strictEqual } from 'node:assert';
import { once } from 'node:events';
import { join } from 'node:path';
import { test } from 'node:test';
import { serveAnswers } from '../../tools/drivers/answeringapplication.mjs';
import { until } from '../../tools/drivers/hostprocess.mjs';
import { endsInOrder, hostStarter, sanitized } from './support/hosttest.mjs';
import { endsAbnormally, mutatedTasks } from './support/mutations.mjs';

const start = hostStarter();
const mebibyte = 1 << 20;

test('10,000 tasks sent without waiting are answered in their order', async () => {
    const host = start();
    const types = ['ui_strings', 'key_state', 'window', 'browser_proxy', 'none'];
    const count = 10_000;
    for (let i = 0; i < count; ++i)
        host.send({ id: `${i}`, type: types[i % types.length], browser_proxy: {} });
    host.closeInput();
    for (let i = 0; i < count; ++i) {
        const { id, type } = await host.receive();
        deepStrictEqual([id, type], [`${i}`, types[i % types.length]]);
    }
    await endsInOrder(host);
    strictEqual(host.unread, 0);
});

test('a message of 64 MiB is read, and one of 64 MiB is written', async () => {
    const host = start();
    const long = 'x'.repeat(64 * mebibyte);
    host.send(long);
    strictEqual((await host.receive()).error, 'unknown_task_type'); // it is not JSON
    host.send({ padding: long, id: 'padded', type: 'key_state' });
    strictEqual((await host.receive()).id, 'padded');
    host.send({ id: long, type: 'key_state' });
    ok((await host.receive()).id === long);
    host.closeInput();
    await endsInOrder(host);
});

test('after many mutated tasks the host still answers', async () => {
    const seed = Number(process.env.KOVALO_SEED ?? 20260101);
    const host = start({ env: { KOVALO_LOG_LEVEL: '0' } });
    const tasks = mutatedTasks(seed);
    let skipped = 0;
    for (let batch = 0; batch < 20; ++batch) {
        let sent = 0;
        for (let i = 0; i < 1000; ++i) {
            const task = tasks.next().value;
            if (endsAbnormally(task)) {
                ++skipped;
            } else {
                host.send(task);
                ++sent;
            }
        }
        host.send({ id: `mark ${batch}`, type: 'key_state' });
        let answers = 0;
        while ((await host.receive()).id !== `mark ${batch}`)
            ++answers;
        strictEqual(answers, sent, `seed ${seed}, batch ${batch}`);
    }
    ok(skipped < 2000, `${skipped} tasks left out`);
    host.closeInput();
    await endsInOrder(host);
});

test('unread answers cost little memory and do not delay the end of the host', async () => {
    const host = start();
    await host.handshake();
    host.child.stdout.pause();
    const [peak, read] = [host.statusKilobytes('VmHWM'), host.bytesRead()];
    const long = 'x'.repeat(60_000);
    for (let i = 0; i < 1000; ++i)
        host.send({ id: long, type: 'key_state' });
    // The host stops reading while its own answers are not read.
    let before = 0;
    await until(async () => {
        const now = host.bytesRead();
        await new Promise(resolve => { setTimeout(resolve, 200); });
        return now > read && now === before || (before = now, false);
    }, 'the host to stop reading');
    ok(before - read < 30 * mebibyte, `${before - read} bytes were read`);
    const grown = host.statusKilobytes('VmHWM') - peak;
    ok(sanitized || grown < 40 * 1024, `${grown} kB of memory`);
    host.child.stdin.destroy();
    strictEqual((await once(host.child, 'exit'))[0], 0);
    host.child.stdout.resume();
    await host.end();
    strictEqual(host.log.split('answers are dropped').length - 1, 1, host.log);
});

test('a task of 20,000 downloads uses little memory and releases it', async t => {
    const host = start();
    const server = await serveAnswers(join(host.folder, 'tmp'));
    t.after(() => server.close());
    const task = count => ({
        type: 'create_downloads',
        create_downloads: {
            downloads: {
                item: Array.from({ length: count }, (_, i) => ({
                    url: `http://127.0.0.1:9/folder/${i}/archive.tar.gz`,
                    httpReferer: `https://www.example.org/list?page=${i}`,
                    httpCookies: `session=0123456789abcdef; page=${i}`,
                    userAgent: 'Mozilla/5.0 (X11; Linux x86_64; rv:128.0) Gecko/20100101',
                })),
            },
        },
    });
    await until(async () => (await host.ask(task(1))).result === '1', 'the connection');
    const before = host.statusKilobytes('VmRSS');
    const size = JSON.stringify(task(20_000)).length;
    strictEqual((await host.ask(task(20_000))).result, '1');
    // Once nothing is pending any more.
    strictEqual((await host.ask(task(1))).result, '1');
    const peak = (host.statusKilobytes('VmHWM') - before) * 1024 / size;
    const kept = (host.statusKilobytes('VmRSS') - before) / 1024;
    // A download takes about 2 kB on the link.
    ok(sanitized || peak < 20, `${peak} bytes for each`);
    ok(sanitized || kept < 10, `${kept} MiB stay`);
    host.closeInput();
    await endsInOrder(host);
});

test('resource limits of the system never crash the host', { skip: sanitized }, async () => {
    // Limited address space: a task that does not fit is answered, and so is the next one.
    let host = start({ limit: '-v 500000' });
    host.send({ id: '1', type: 'key_state', padding: 'x'.repeat(300 * mebibyte) });
    match((await host.receive()).error, /^(unknown_task_type|not enough memory)$/);
    strictEqual((await host.handshake()).bt, true);
    host.closeInput();
    await endsInOrder(host);
    match(host.log, /not enough memory/);

    // Limited file size: the log is full.
    host = start({ limit: '-f 1', env: { KOVALO_LOG_LEVEL: '3', KOVALO_LOG_FILE: join(host.folder, 'log') } });
    for (let i = 0; i < 100; ++i)
        strictEqual((await host.ask({ type: 'key_state' })).error, '');
    host.closeInput();
    await endsInOrder(host);

    // No threads: there is no memory for the stack of another one.
    host = start({ limit: '-v 3000000 -s 4000000' });
    await endsInOrder(host);
    match(host.log, /no thread can be had.*\n.*ending: the start failed/);
});
