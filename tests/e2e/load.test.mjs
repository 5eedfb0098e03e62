// Much at once, very large, and by the hundred thousand.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { test } from 'node:test';
import { endsInOrder, hostStarter, sanitized } from './support/hosttest.mjs';
import { endsAbnormally, mutatedFrames } from './support/mutations.mjs';

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

test('after many mutated frames the host still answers', async () => {
    const seed = Number(process.env.KOVALO_SEED ?? 20260101);
    const count = 100_000;
    const batchSize = 1000;
    const host = start({ env: { KOVALO_LOG_LEVEL: '0' } });
    const frames = mutatedFrames(seed);
    let skipped = 0;
    for (let sent = 0; sent < count; sent += batchSize) {
        const batch = [];
        while (batch.length < batchSize) {
            const frame = frames.next().value;
            if (endsAbnormally(frame))
                ++skipped;
            else
                batch.push(frame);
        }
        for (const frame of batch)
            host.send(frame);
        const mark = `mark ${sent}`;
        host.send({ id: mark, type: 'key_state' });
        let answers = 0;
        try {
            while ((await host.receive()).id !== mark)
                ++answers;
        } catch (error) {
            throw new Error(`seed ${seed}, frames ${sent} to ${sent + batchSize}`, { cause: error });
        }
        strictEqual(answers, batchSize, `answers to frames ${sent} to ${sent + batchSize}`);
    }
    ok(skipped < count / 10, `${skipped} frames left out`);
    strictEqual((await host.handshake()).version, '6.25.0.6016');
    host.closeInput();
    await endsInOrder(host);
});

test('streams whose lengths are wrong end the host in order', async () => {
    const frames = mutatedFrames(7);
    for (let round = 0; round < (sanitized ? 50 : 200); ++round) {
        const host = start({ args: round % 2 ? ['--buggybrowser'] : [], env: { KOVALO_LOG_LEVEL: '0' } });
        for (let i = 0; i < 20; ++i) {
            const body = frames.next().value;
            const length = Math.max(0, body.length + (i === round % 20 ? (round % 41) - 20 : 0));
            const prefix = Buffer.alloc(4);
            prefix.writeUInt32LE(length);
            host.write(round % 2 ? `${length} ` : prefix);
            host.write(endsAbnormally(body) ? Buffer.alloc(body.length) : body);
        }
        host.closeInput();
        await endsInOrder(host);
    }
});
