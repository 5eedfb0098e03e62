// How the host ends: with its input, on request, and in the ways that are documented as abnormal.

import { deepStrictEqual, doesNotMatch, match, strictEqual } from 'node:assert';
import { test } from 'node:test';
import { encodeFrame } from '../../tools/drivers/framing.mjs';
import { endsInOrder, hostStarter } from './support/hosttest.mjs';

const start = hostStarter();
const shutdown = { id: '', type: 'shutdown' };

for (const args of [[], ['--buggybrowser']]) {
    test(`input that ends after any byte, with arguments [${args}]`, async () => {
        const textLength = args.length > 0;
        const frames = ['{"id":"1","type":"handshake","handshake":{}}', '{"id":"2","type":"key_state"}']
            .map(task => encodeFrame(task, { textLength }));
        const stream = Buffer.concat(frames);
        const inputs = [...stream.keys(), stream.length].map(cut => stream.subarray(0, cut));
        const worker = async () => {
            for (let input = inputs.shift(); input; input = inputs.shift()) {
                const host = start({ args });
                host.write(input);
                host.closeInput();
                await endsInOrder(host);
                const whole = (input.length >= frames[0].length) + (input.length >= stream.length);
                strictEqual(host.unread, whole, `${input.length} bytes`);
                doesNotMatch(host.log, /ASSERTION|alive/);
            }
        };
        await Promise.all([worker(), worker()]);
    });
}

test('200 shutdowns in a row, each with the input left open', async () => {
    for (let round = 0; round < 200; ++round) {
        const host = start();
        const unread = Buffer.concat(Array(50).fill(encodeFrame('{"id":"1","type":"ui_strings"}')));
        // At once, after an answer, behind unread tasks, before others, and for a browser that reads no more.
        const when = round % 5;
        if (when === 1 || when === 4)
            await host.handshake();
        if (when === 4)
            host.closeOutput();
        if (when === 2 || when === 4)
            host.write(unread);
        host.send(shutdown);
        if (when === 3)
            host.write(unread);
        await endsInOrder(host);
        if (when === 2)
            strictEqual(host.unread, 50);
    }
});

for (const [what, task, words] of [
    ['create_downloads is a text', { id: '1', type: 'create_downloads', create_downloads: 'x' }, /type mismatch/],
    ['post_settings.browser is a number', { id: '1', type: 'post_settings', post_settings: { browser: 1 } }, /type mismatch/],
    ['the id of kov_json_task is a word', { id: 'one', type: 'kov_json_task', json: '{}' }, /stoll/],
    ['the id of kov_json_task has 20 digits', { id: '9'.repeat(20), type: 'kov_json_task', json: '{}' }, /stoll/],
]) {
    test(`the host ends abnormally when ${what}`, async () => {
        const host = start();
        await host.handshake();
        host.send(task);
        const { signal } = await host.end();
        strictEqual(signal, 'SIGABRT', host.log);
        match(host.log, words);
        strictEqual(host.unread, 0);
    });
}

test('what resembles those is answered', async () => {
    const host = start();
    for (const [task, error] of [
        [{ type: 'create_downloads' }, 'invalid arguments'],
        [{ type: 'create_downloads', create_downloads: { downloads: 'x' } }, 'invalid arguments'],
        [{ type: 'create_downloads', create_downloads: { downloads: { item: [{ url: 'http://127.0.0.1/' }, 'x'] } } },
         'invalid arguments'],
        [{ type: 'browser_proxy', browser_proxy: 'x' }, 'failure'],
        [{ type: 'handshake', handshake: 'x' }, ''],
        [{ id: ' \t-7 and more', type: 'kov_json_task', json: '{}' }, ''],
    ]) {
        const answer = await host.ask(task);
        deepStrictEqual([answer.type, answer.error], [task.type, error], JSON.stringify(task));
    }
    host.closeInput();
    await endsInOrder(host);
});
