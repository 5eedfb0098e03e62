// What the host leaves in its log, and where.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { chmodSync, mkdirSync, readFileSync, statSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { converse, farewell } from '../../tools/drivers/conversation.mjs';
import { HostProcess } from '../../tools/drivers/hostprocess.mjs';
import { endsInOrder } from './support/hosttest.mjs';
import { Sandbox } from '../../tools/drivers/sandbox.mjs';

const sandbox = new Sandbox();
after(() => sandbox.remove());

/** One task that is no JSON, then the end of input; returns what came on stderr. */
async function run(env) {
    const host = new HostProcess(sandbox, { env });
    host.send('{');
    host.closeInput();
    await endsInOrder(host);
    strictEqual(host.unread, 1);
    return host.log;
}

const unreadable = 'ASSERTION FAILED: pmxJsonSerializeObject(*task, msg.toStdString()), '
    + '../../src/wenativehost/wenativehosttasksprocessor,136';
const line = /^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z \[\d+\] 1 (.*)$/;

/** The texts of the lines that tell of failed checks; every line must be one of level 1. */
function failedChecks(log) {
    return log.trimEnd().split('\n').map(each => each.match(line)[1])
        .filter(text => text.startsWith('ASSERTION'));
}

test('lines of level 1 go to stderr', async () => {
    deepStrictEqual(failedChecks(await run({})), [unreadable]);
});

test('level 0 silences the log', async () => {
    strictEqual(await run({ KOVALO_LOG_LEVEL: '0' }), '');
});

test('the log can go to a file, which is made with its folder and appended to', async () => {
    const file = join(sandbox.folder, 'new/folder/host.log');
    for (const count of [1, 2]) {
        strictEqual(await run({ KOVALO_LOG_FILE: file }), '');
        strictEqual(readFileSync(file, 'utf8').split(unreadable).length - 1, count);
    }
    strictEqual(statSync(file).mode & 0o777, 0o600);
});

test('a log that cannot be written disturbs nothing', async () => {
    const folder = join(sandbox.folder, 'closed');
    mkdirSync(folder);
    chmodSync(folder, 0o500);
    for (const file of [join(folder, 'x/host.log'), '/dev/full', sandbox.folder, '/proc/none/host.log'])
        await run({ KOVALO_LOG_FILE: file });
});

test('line breaks after frames are checked the wrong way round, and the log says so', async () => {
    const host = new HostProcess(sandbox);
    await host.handshake('crlf');
    await host.handshake();
    host.closeInput();
    await endsInOrder(host);
    deepStrictEqual(failedChecks(host.log), ['ASSERTION FAILED: 2 != fwrite ("\\r\\n", 1, 2, stdout), '
        + '../../src/wenativehost/consolemessagessender,88']);
});

test('a clean run leaves nothing alive', async () => {
    const host = new HostProcess(sandbox, { env: { KOVALO_LOG_LEVEL: '9' } });
    await converse(task => host.ask(task));
    host.send(farewell);
    await endsInOrder(host);
    ok(!/alive|ASSERTION/.test(host.log), host.log);
});
