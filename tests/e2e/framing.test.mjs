// The host's frames, with all options.

import { deepStrictEqual, strictEqual } from 'node:assert';
import { test } from 'node:test';
import { encodeFrame, encodeLength } from '../../tools/drivers/framing.mjs';
import { until } from '../../tools/drivers/hostprocess.mjs';
import { endsInOrder, hostStarter } from './support/hosttest.mjs';

const start = hostStarter();
const handshakeOptions = ['crlf', 'sendTextLength', 'receivePercent', 'sendPercent', 'receiveBase64', 'sendBase64'];
const unknownEmpty = { error: 'unknown_task_type', id: '', result: '', type: '' };

for (const args of [[], ['--buggybrowser'], ['origin', '--BuggyBrowser']]) {
    test(`every combination of the handshake's options, with arguments [${args}]`, async () => {
        const host = start({ args });
        // A long id, so that lengths have several digits, with characters that the encodings treat specially.
        const id = 'é%41%4 "\\/\r\n+=\u0001' + 'x'.repeat(300) + '日本';
        for (let bits = 0; bits < 1 << handshakeOptions.length; ++bits) {
            const options = handshakeOptions.filter((_, index) => bits & (1 << index));
            strictEqual((await host.handshake(...options)).type, 'handshake', `${options}`);
            deepStrictEqual(await host.ask({ id, type: 'window' }),
                            { error: 'unknown_task_type', id, result: '', type: 'window' }, `${options}`);
        }
        await host.handshake();
        host.closeInput();
        await endsInOrder(host);
        strictEqual(host.unread, 0);
        strictEqual(host.unreadBytes, 0);
    });
}

test('malformed options are off, malformed bodies are tasks of unknown type', async () => {
    const host = start();
    for (const value of ['true', '', '2', 1, true, null, ['1'], { 1: '1' }])
        strictEqual((await host.ask({ type: 'handshake', handshake: { response_add_crlf: value } })).bt, true);
    for (const body of ['', 'x', '{', '[]', '"handshake"', '{"id":"1"', Buffer.from([0xff, 0xfe, 0]),
                        '['.repeat(1_000_000), '{"a":'.repeat(1_000_000)]) {
        host.send(body);
        deepStrictEqual(await host.receive(), unknownEmpty, body.toString().slice(0, 40));
    }
    await host.handshake('receiveBase64');
    for (const [body, type] of [['ey*J', ''], ['e', ''], ['eyJ', ''], ['eyJhIjox=Q==', ''], ['====', ''],
                                ['eyJpZCI6IiIsInR5cGUiOiJhIn0=\r\n', 'a']]) {
        host.write(encodeFrame(body));
        deepStrictEqual(await host.receive(), { ...unknownEmpty, type }, body);
    }
    host.closeInput();
    await endsInOrder(host);
});

test('a text length may follow a line break; 0 or an invalid number ends the input', async () => {
    const task = '{"id":"1","type":"window"}';
    for (const [input, answers] of [[`\r\n26 ${task}\r\n\t+26 ${task}`, 2], ['0 ' + `26 ${task}`, 0],
                                    [`x26 ${task}`, 0], [` 26 ${task}`, 0], [`26x ${task}`, 1]]) {
        const host = start({ args: ['--buggybrowser'] });
        host.write(input);
        host.closeInput();
        await endsInOrder(host);
        strictEqual(host.unread, answers, JSON.stringify(input));
    }
});

test('an empty frame is a message; memory is allocated as bytes arrive', async () => {
    for (const [args, prefix] of [[[], encodeLength(0xffffffff)],
                                  [['--buggybrowser'], encodeLength(0xffffffff, true)]]) {
        const host = start({ args });
        await host.handshake();
        const memoryBefore = host.statusKilobytes('VmHWM');
        const readBefore = host.bytesRead();
        await host.write(Buffer.concat([prefix, Buffer.from('0123456789')]));
        await until(() => host.bytesRead() >= readBefore + prefix.length + 10, 'the host to read all');
        const peaks = [host.statusKilobytes('VmHWM')];
        host.closeInput();
        await until(() => {
            try {
                peaks.push(host.statusKilobytes('VmHWM'));
                return false;
            } catch {
                return true; // it has ended
            }
        }, 'the host to end');
        await endsInOrder(host);
        const grown = Math.max(...peaks) - memoryBefore;
        strictEqual(grown < 64 * 1024, true, `${grown} kB of memory for 10 bytes`);
        strictEqual(host.unread, 0);
    }
});
