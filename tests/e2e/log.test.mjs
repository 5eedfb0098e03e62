// What the host logs, and where.

import { deepStrictEqual, doesNotMatch, match, ok, strictEqual } from 'node:assert';
import { execFileSync, spawn } from 'node:child_process';
import { chmodSync, existsSync, mkdirSync, readFileSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { converse, farewell } from '../../tools/drivers/conversation.mjs';
import { HostProcess, until } from '../../tools/drivers/hostprocess.mjs';
import { endsInOrder } from './support/hosttest.mjs';
import { Sandbox, version } from '../../tools/drivers/sandbox.mjs';

const sandbox = new Sandbox();
after(() => sandbox.remove());

/** Sends one task that is not JSON, then ends the input; returns the output on stderr. */
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

/** The texts of the lines; checks that each is of that level or a lower one. */
function texts(log, level = 1) {
    const line = new RegExp(`^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z \\[\\d+\\] [1-${level}] (.*)$`);
    return log.trimEnd().split('\n').map(each => each.match(line)[1]);
}

test('the log goes to stderr, to a file (created with its folder), or nowhere', async () => {
    const lines = texts(await run({}));
    strictEqual(lines[0], `[main]: version ${version}, arguments: `);
    ok(lines.includes(unreadable));
    match(lines.at(-1), /^\[main\]: ending: end of input$/);
    strictEqual(await run({ KOVALO_LOG_LEVEL: '0' }), '');
    const file = join(sandbox.folder, 'new/folder/host.log');
    for (const count of [1, 2]) {
        strictEqual(await run({ KOVALO_LOG_FILE: file }), '');
        strictEqual(readFileSync(file, 'utf8').split(unreadable).length - 1, count);
    }
    strictEqual(statSync(file).mode & 0o777, 0o600);
    const folder = join(sandbox.folder, 'closed');
    mkdirSync(folder);
    chmodSync(folder, 0o500);
    for (const unwritable of [join(folder, 'x/host.log'), '/dev/full', sandbox.folder, '/proc/none/host.log'])
        await run({ KOVALO_LOG_FILE: unwritable });
});

test('the log has the reasons of failures and no private data', async () => {
    // An application that cannot be executed counts as not installed.
    writeFileSync(join(sandbox.programs, 'kov'), 'x');
    const host = new HostProcess(sandbox, {
        args: ['/home/private/manifest.json', 'chrome-extension://abc/'], env: { KOVALO_LOG_LEVEL: '3' },
    });
    const download = {
        url: 'http://example.com/private/name.zip?private=1', suggestedName: 'private.zip', fileSize: '1',
        httpCookies: 'private=2', httpReferer: 'http://example.com/private', userAgent: 'private',
    };
    const create = options => host.ask({
        type: 'create_downloads', create_downloads: { downloads: { item: [download] }, ...options },
    });
    strictEqual((await create({})).error, 'app_not_installed');
    const { settings } = await host.ask({ type: 'query_settings' });
    settings.browser.monitor.skipSmallerThan = '1000';
    await host.ask({ type: 'post_settings', post_settings: settings });
    strictEqual((await create({ catchedDownloads: '1' })).error, 'ignoredDueSettings');
    await host.ask({ type: 'handshake', handshake: 'x' });
    await host.ask({ type: 'post_settings', post_settings: { browser: { menu: { dllink: 'private' } } } });
    await host.handshake('crlf');
    await host.handshake();
    await converse(task => host.ask(task));
    host.send(farewell);
    await endsInOrder(host);
    const log = texts(host.log, 3).join('\n');
    doesNotMatch(log, /private|alive/);
    deepStrictEqual(log.match(/ASSERTION.*/g), ['ASSERTION FAILED: 2 != fwrite ("\\r\\n", 1, 2, stdout), '
        + '../../src/wenativehost/consolemessagessender,88']);
    for (const words of [
        new RegExp(`version ${version}, arguments: chrome-extension://abc/$`, 'm'),
        /task create_downloads #\d+ answered after \d+ ms: app_not_installed/,
        /left to the browser: the file is too small\n.*task create_downloads #\d+ .*: ignoredDueSettings/,
        /task handshake #\d+ answered after \d+ ms: no error/,
        /the extension ends the host\n.*ending: asked to/,
        /\d+ messages were taken/,
        /the record "handshake" is no object\n.*task handshake/,
        /the member "dllink" has the wrong kind/,
        /\[main\]: ended$/,
    ])
        match(log, words);
});

test('the log is in English whatever the language', async () => {
    const here = new Sandbox();
    let other;
    try {
        const env = { LANG: 'de_DE.UTF-8', LANGUAGE: 'de' };
        const full = new HostProcess(here, { env, limit: '-c 0; exec >/dev/full' });
        full.send({ id: '1', type: 'key_state' });
        full.closeInput();
        await endsInOrder(full);
        match(full.log, /a message was not written: No space left on device/);

        // The application's socket path is taken, it cannot be launched, nor can the second process.
        other = spawn('perl', ['-MSocket', '-e', 'socket(S, AF_UNIX, SOCK_DGRAM, 0) && bind(S, sockaddr_un(shift)); <STDIN>',
                               join(here.temporary, `kov6fs${process.getuid()}`)]);
        await until(() => existsSync(other.spawnargs.at(-1)), 'the other socket');
        writeFileSync(join(here.programs, 'kov'), '#!/none', { mode: 0o755 });
        const host = new HostProcess(here, { env });
        strictEqual((await host.ask({ type: 'ui_strings' })).strings.dllink, 'Mit KOV herunterladen');
        host.send({ id: '2', type: 'create_downloads', create_downloads: { downloads: { item: [{ url: 'http://a/' }] } } });
        rmSync(here.host);
        host.closeInput();
        for (const words of [/failed to launch server.*execv: No such file or directory/,
                             /cannot connect to ".*": UnknownSocketError/,
                             /no process can be started: FailedToStart/])
            await until(() => words.test(host.log), `${words}`);
    } finally {
        other?.kill();
        here.remove();
    }
});

test('--help and --version answer on a terminal only', async () => {
    for (const [argument, words] of [['--version', new RegExp(`^wenativehost ${version}\\s*$`)], ['--help', /Kovalo browser extension/]]) {
        const command = `${sandbox.host} ${argument}`;
        match(execFileSync('script', ['-qec', command, '/dev/null'], { encoding: 'utf8' }), words);
        const host = new HostProcess(sandbox, { args: [argument] });
        strictEqual((await host.handshake()).bt, true);
        host.closeInput();
        await endsInOrder(host);
    }
});
