// Faults of the programs around the host, at random moments: killed, hung, missing, too many, too large.
// KOVALO_SEED is the random seed; KOVALO_FAULTS_SHARE is the share of the rounds to run.

import { deepStrictEqual, doesNotMatch, match, notStrictEqual, ok, strictEqual } from 'node:assert';
import { createHash } from 'node:crypto';
import { existsSync, readFileSync, readdirSync, readlinkSync, rmSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { setTimeout as pause } from 'node:timers/promises';
import { CountingServer, HostFixture } from './support/hostfixture.mjs';
import { until } from '../../tools/drivers/hostprocess.mjs';
import { endsInOrder, sanitized } from './support/hosttest.mjs';
import { numbers } from './support/mutations.mjs';

const seed = Number(process.env.KOVALO_SEED ?? 20260101);
const share = Number(process.env.KOVALO_FAULTS_SHARE ?? (sanitized ? 0.25 : 1));
const times = count => Math.max(3, Math.round(count * share));
const mebibyte = 1 << 20;

let server;
before(async () => { server = await CountingServer.start(); });
after(() => {
    strictEqual(server.count('never'), 0);
    for (const [path, count] of server.requests)
        ok(count === 1 || path.startsWith('/kill/'), `${path} was downloaded ${count} times`);
    return server.stop();
});

/** A test with a host and an application of its own. */
function testWithHost(what, beside, play) {
    test(what, async () => {
        const fixture = new HostFixture(beside);
        try {
            await play(fixture);
        } finally {
            await fixture.remove();
        }
    });
}

/** Runs the rounds, several in parallel, each runner with a fixture of its own. */
async function playRounds(count, play) {
    let next = 0;
    await Promise.all(Array.from({ length: 4 }, async () => {
        const fixture = new HostFixture();
        try {
            for (let round = next++; round < count; round = next++)
                await play(fixture, round);
        } finally {
            await fixture.remove();
        }
    }));
}

function spin(microseconds) {
    const end = process.hrtime.bigint() + BigInt(microseconds) * 1000n;
    while (process.hrtime.bigint() < end);
}

/** The session of a process, proc(5). */
function sessionOf(pid) { return readFileSync(`/proc/${pid}/stat`, 'utf8').split(') ')[1].split(' ')[3]; }

function checkAnswers(answers, allowed, what) {
    for (const answer of answers)
        ok(allowed.includes(answer?.result || answer?.error), `${what}: ${JSON.stringify(answer)}`);
}

describe('faults', { concurrency: 4 }, () => {
    testWithHost('an application that is missing, not executable, or exits at once', [], async fixture => {
        const extension = fixture.extension();
        checkAnswers([await extension.download(server.url('never'))], ['app_not_installed'], 'missing');
        fixture.replaceApplication('exit 0', 0o644);
        checkAnswers([await extension.download(server.url('never'))], ['app_not_installed'], 'not executable');
        fixture.replaceApplication('env > "$0.environment"; exit 3');
        const answers = [extension.download(server.url('never')), extension.download(server.url('never'))];
        strictEqual((await extension.ask('key_state')).error, ''); // the host keeps running
        checkAnswers(await Promise.all(answers), ['Connection failure'], 'exits');
        // The host's choice of an event loop is not the application's.
        ok(!readFileSync(fixture.program('kov.environment'), 'utf8').includes('QT_NO_GLIB'));
        await extension.end();
    });

    for (const [what, leave] of [
        ['the end of the input', extension => extension.host.closeInput()],
        ['a shutdown', extension => extension.host.send({ id: '', type: 'shutdown' })],
        ['SIGTERM', extension => extension.host.child.kill('SIGTERM')],
        ['the end of the input, and no other process can be started', (extension, fixture) => {
            rmSync(fixture.sandbox.host, { force: true });
            extension.host.closeInput();
        }],
    ]) {
        testWithHost(`the application comes up later than ${what}`, ['kov'], async fixture => {
            fixture.replaceApplication('echo >> "$0.launches"; exec sleep 600');
            const picked = Array.from({ length: 20 }, (_, i) => `picked/${encodeURI(what)}/${i}`);
            const extensions = [1, 2].map(i => fixture.extension({ KOVALO_LOG_FILE: fixture.program(`log${i}`) }));
            await Promise.all(extensions.map(async (extension, i) => {
                extension.create({ catchedDownloads: '1' }, server.url('never'));
                for (const path of picked.filter((_, j) => j % 2 === i))
                    extension.download({ url: server.url(path), httpCookies: 'a=secret' });
                extension.download(`ftp://127.0.0.1/refused${i}.zip?secret`);
                await extension.ask('kov_json_task', { json: '{}' }, `${7000 + i}`);
                leave(extension, fixture);
            }));
            const ends = Promise.all(extensions.map(extension => endsInOrder(extension.host)));
            const canStart = existsSync(fixture.sandbox.host);
            if (canStart)
                await ends; // its pipes are closed, too: the browser does not wait for the second process
            await until(() => readFileSync(fixture.program('kov.launches')).length === (canStart ? 4 : 2), 'the launches');
            const successors = fixture.sandbox.running('wenativehost');
            strictEqual(successors.length, canStart ? 2 : 0);
            for (const pid of successors) {
                doesNotMatch(readFileSync(`/proc/${pid}/cmdline`, 'utf8'), /secret/);
                notStrictEqual(sessionOf(pid), sessionOf('self'));
                deepStrictEqual(new Set([1, 2].map(fd => readlinkSync(`/proc/${pid}/fd/${fd}`))), new Set(['/dev/null']));
            }
            fixture.restoreApplication();
            await fixture.serve();
            await until(() => picked.every(path => server.count(path) === 1), 'the downloads');
            await until(() => extensions.every((_, i) => fixture.log.split(`JSON request ${7000 + i}\n`).length === 2), 'the texts');
            await ends;
            await until(() => fixture.sandbox.running('wenativehost').length === 0, 'the ends of the successors');
            for (const i of [1, 2]) {
                const log = readFileSync(fixture.program(`log${i}`), 'utf8');
                match(log, canStart ? /: 12 messages to deliver[^]*: 10 of 11 downloads were delivered/ : /has got 12 waiting messages/);
                doesNotMatch(log, /ASSERTION|alive|secret/);
            }
            // Downloads lost meanwhile are reported once, to the next extension.
            for (const expected of canStart ? [['refused0.zip', 'refused1.zip'], []] : []) {
                const next = fixture.extension();
                await next.ask('handshake', { handshake: {} });
                await next.end();
                deepStrictEqual(next.told.map(({ type, result, error }) => [type, result, error]).sort(), expected.map(
                    file => ['lost_download', file, 'nothing that can be downloaded']));
            }
        });
    }

    test('the application is killed during and after "add"', async () => {
        await playRounds(times(130), async (fixture, round) => {
            const random = numbers(seed + round);
            const where = `seed ${seed}, round ${round}`;
            const pid = await fixture.serve();
            const extension = fixture.extension();
            checkAnswers([await extension.reach()], ['nothing that can be downloaded'], where);
            const url = name => server.url(`kill/${round}/${name}`);
            const answers = Array.from({ length: 1 + random.below(5) }, (_, i) => extension.download(url(i)));
            if (round % 2)
                checkAnswers(await Promise.all(answers), ['1'], where);
            spin(random.below(2000));
            process.kill(pid, 'SIGKILL');
            const results = await Promise.all(answers);
            checkAnswers(results, ['1', 'Connection failure'], where);
            // It is launched again, and works; messages sent before its end was noticed have failed.
            let tries = 0;
            while ((await extension.download(url(`last ${++tries}`))).error === 'Connection failure');
            // Added downloads are finished by the next instance of the application.
            const added = results.flatMap(({ result }, i) => result === '1' ? [`${url(i)}\t`] : []);
            await until(async () => {
                const finished = (await fixture.kov('jobs')).split('\n').filter(line => /^\d+\tfinished/.test(line));
                return [...added, `last%20${tries}\t`].every(each => finished.some(line => line.includes(each)));
            }, where);
            await extension.end();
        });
    });

    testWithHost('a hung application, and a host that ends within a frame', ['kov'], async fixture => {
        const pid = await fixture.serve();
        const [waiting, leaving] = [fixture.extension(), fixture.extension()];
        await Promise.all([waiting.reach(), leaving.reach()]);
        process.kill(pid, 'SIGSTOP');
        let answered = 0;
        const answers = Array.from({ length: 20 }, async (_, i) => {
            const answer = await waiting.download(server.url(`hung/${i}`));
            ++answered;
            return answer;
        });
        const half = leaving.download({ url: server.url('half'), httpPostData: 'x'.repeat(8 * mebibyte) });
        // By the second answer the host has written as much as fits into the socket.
        await leaving.ask('key_state');
        await leaving.ask('key_state');
        await leaving.end();
        strictEqual(await half, null);
        strictEqual((await waiting.ask('key_state')).error, '');
        strictEqual(answered, 0);
        process.kill(pid, 'SIGCONT');
        checkAnswers(await Promise.all(answers), ['1'], 'resumed');
        await until(() => answers.every((_, i) => server.count(`hung/${i}`) === 1), 'the downloads');
        deepStrictEqual(fixture.sandbox.running('kov'), [pid]);
        strictEqual(server.count('half'), 0);
        await waiting.end();
    });

    test('a task directly before the end of the input reaches the application', async () => {
        await playRounds(times(300), async (fixture, round) => {
            await fixture.serve();
            const extension = fixture.extension();
            await extension.reach();
            // Sometimes more than fits into the socket at once.
            const httpPostData = 'x'.repeat(20_000);
            const downloads = round % 2 ? round % 10 === 1 ? 20 : 1 : 0;
            for (let i = 0; i < downloads; ++i)
                extension.download({ url: server.url(`end/${round}/${i}`), httpPostData });
            if (downloads === 0)
                extension.ask('kov_json_task', { json: `"${httpPostData}"` }, `${1000 + round}`);
            await extension.end();
            await until(() => downloads === 0 ? fixture.log.includes(`JSON request ${1000 + round}\n`)
                : Array.from({ length: downloads }).every((_, i) => server.count(`end/${round}/${i}`) === 1), `round ${round}`);
        });
    });

    testWithHost('10,000 downloads in one task, and one of 64 MiB', ['kov'], async fixture => {
        // None of them has a file: creating and deleting thousands of files is not tested here.
        const paths = Array.from({ length: times(10_000) }, (_, i) => `none/${i}`);
        const httpPostData = 'data='.padEnd(64 * mebibyte, '0123456789abcdef~');
        const extension = fixture.extension();
        checkAnswers([await extension.download(...paths.map(path => server.url(path)))], ['1'], 'many');
        checkAnswers([await extension.download({ url: server.url('big'), httpPostData })], ['1'], 'big');
        await until(() => paths.every(path => server.count(path) === 1) && server.posted.has('/big'), 'all downloads');
        strictEqual(server.posted.get('/big'), createHash('sha256').update(httpPostData).digest('hex'));
        await extension.end();
    });

    testWithHost('20 hosts at once share one application and one settings file', ['kov'], async fixture => {
        const extensions = Array.from({ length: 20 }, () => fixture.extension());
        const values = { allowDownload: false, skipExtensions: 'iso xyz' };
        await Promise.all(extensions.map(async (extension, i) => {
            const answer = extension.download(server.url(`shared/${i}`));
            await extension.querySettings();
            if (i === 7)
                await extension.settings.change({ 'monitor.allowDownload': false, 'monitor.skipExtensions': 'iso xyz' });
            checkAnswers([await answer], ['1'], `host ${i}`);
        }));
        await until(() => extensions.every(extension => extension.hasSettings(values)), 'the settings at all hosts');
        await until(() => extensions.every((_, i) => server.count(`shared/${i}`) === 1), 'all downloads');
        await until(() => fixture.sandbox.running('kov').length === 1, 'one application to stay');
        await Promise.all(extensions.map(extension => extension.end()));
        await fixture.kov('quit');
        await until(() => fixture.sandbox.running('kov').length === 0, 'its end');

        // Without a running application, the settings come from the file.
        const last = fixture.extension();
        await last.querySettings();
        ok(last.hasSettings(values), JSON.stringify(last.settings.current));
        await last.end();
        const files = readdirSync(fixture.sandbox.home, { recursive: true }).filter(name => name.endsWith('/db.sqlite'));
        strictEqual(files.length, 1, `${files}`);
    });

    testWithHost('the application and the extension change settings at the same moment', ['kov'], async fixture => {
        const random = numbers(seed);
        await fixture.serve();
        const extension = fixture.extension();
        await extension.reach();
        await extension.querySettings();
        for (let round = 1; round <= times(60); ++round) {
            const where = `seed ${seed}, round ${round}`;
            const told = fixture.kov('set', 'WbDownloadsUnwantedHostsList', `h${round}`);
            await pause(random.below(sanitized ? 300 : 30));
            await extension.settings.change({ 'monitor.skipExtensions': `x${round}` });
            await told;
            await until(() => extension.hasSettings({ skipExtensions: `x${round}`, skipServers: `h${round}` }), where);
            match(await fixture.kov('list'), new RegExp(`ExtensionsList=x${round}\n(.*\n)*?.*HostsList=h${round}\n`), where);
        }
        await extension.end();
    });
});
