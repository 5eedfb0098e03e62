// How the host ends: with its input, on request, and in the ways that are documented as abnormal.

import { doesNotMatch, match, strictEqual } from 'node:assert';
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
        // At once, after an answer, behind unread tasks, and before others.
        if (round % 4 === 1)
            await host.handshake();
        if (round % 4 === 2)
            host.write(Buffer.concat(Array(50).fill(encodeFrame('{"id":"1","type":"ui_strings"}'))));
        host.send(shutdown);
        if (round % 4 === 3)
            host.send({ id: '1', type: 'ui_strings' });
        await endsInOrder(host);
        if (round % 4 === 2)
            strictEqual(host.unread, 50);
    }
});

test('tasks for a browser that reads no more do not kill the host', async () => {
    const host = start();
    await host.handshake();
    host.closeOutput();
    for (let i = 0; i < 1000; ++i)
        host.send({ id: String(i), type: 'ui_strings' });
    host.closeInput();
    await endsInOrder(host);
});

for (const [what, task, words] of [
    ['create_downloads is a text', { id: '1', type: 'create_downloads', create_downloads: 'x' }, /type mismatch/],
    ['create_downloads is a list', { id: '1', type: 'create_downloads', create_downloads: [] }, /type mismatch/],
    ['post_settings is null', { id: '1', type: 'post_settings', post_settings: null }, /type mismatch/],
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
    for (const task of [
        { type: 'create_downloads' },
        { type: 'create_downloads', create_downloads: {} },
        { type: 'create_downloads', create_downloads: { downloads: 'x' } },
        { type: 'create_downloads', create_downloads: { downloads: { item: ['x'] } } },
        { type: 'browser_proxy', browser_proxy: 'x' },
        { type: 'handshake', handshake: 'x' },
        { id: ' \t-7 and more', type: 'kov_json_task', json: '{}' },
    ])
        strictEqual((await host.ask(task)).type, task.type, JSON.stringify(task));
    host.closeInput();
    await endsInOrder(host);
});
