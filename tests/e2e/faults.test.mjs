// What befalls the programs around the host, and the moments at which it does: killed, hung, missing,
// too many, too much. Seeded by KOVALO_SEED; KOVALO_FAULTS_SHARE is how much of the rounds to play.

import { deepStrictEqual, doesNotMatch, match, ok, strictEqual } from 'node:assert';
import { createHash } from 'node:crypto';
import { chmodSync, readFileSync, readdirSync, renameSync, writeFileSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { setTimeout as pause } from 'node:timers/promises';
import { CountingServer, Scene } from './support/faultscene.mjs';
import { until } from '../../tools/drivers/hostprocess.mjs';
import { sanitized } from './support/hosttest.mjs';
import { numbers } from './support/mutations.mjs';

const seed = Number(process.env.KOVALO_SEED ?? 20260101);
const share = Number(process.env.KOVALO_FAULTS_SHARE ?? (sanitized ? 0.25 : 1));
const times = count => Math.max(3, Math.round(count * share));
const mebibyte = 1 << 20;

let server;
before(async () => { server = await CountingServer.start(); });
after(() => {
    for (const [path, count] of server.visits)
        ok(count === 1 || path.startsWith('/kill/'), `${path} was downloaded ${count} times`);
    return server.stop();
});

/** A test in a scene of its own. */
function scene(what, beside, play) {
    test(what, async () => {
        const here = new Scene(beside);
        try {
            await play(here);
        } finally {
            await here.remove();
        }
    });
}

/** Plays the rounds, several at a time, each player in a scene of his own. */
async function playRounds(count, play) {
    let next = 0;
    await Promise.all(Array.from({ length: 4 }, async () => {
        const here = new Scene();
        try {
            for (let round = next++; round < count; round = next++)
                await play(here, round);
        } finally {
            await here.remove();
        }
    }));
}

function spin(microseconds) {
    const end = process.hrtime.bigint() + BigInt(microseconds) * 1000n;
    while (process.hrtime.bigint() < end);
}

function checkAnswers(answers, allowed, what) {
    for (const answer of answers)
        ok(allowed.includes(answer?.result || answer?.error), `${what}: ${JSON.stringify(answer)}`);
}

describe('faults', { concurrency: 4 }, () => {
    const script = (text, mode) => here => {
        writeFileSync(here.program('kov'), `#!/bin/sh\n${text}\n`);
        chmodSync(here.program('kov'), mode);
    };
    for (const [what, arrange, outcome] of [
        ['is missing', () => {}, 'app_not_installed'],
        ['exits at once', script('exit 3', 0o755), 'Connection failure'],
        ['may not be executed', script('exit 0', 0o644), 'app_not_installed'],
    ]) {
        scene(`an application that ${what}`, [], async here => {
            arrange(here);
            const extension = here.extension();
            const answers = [extension.download(server.url('never')), extension.download(server.url('never'))];
            strictEqual((await extension.ask('key_state')).error, ''); // the host goes on
            checkAnswers(await Promise.all(answers), [outcome], what);
            await extension.end();
        });
    }

    scene('the input ends while downloads wait for the application', [], async here => {
        script('exec sleep 600', 0o755)(here);
        const extension = here.extension();
        const answers = Array.from({ length: 100 }, () => extension.download(server.url('never')));
        await extension.ask('key_state');
        await extension.end();
        deepStrictEqual(new Set(await Promise.all(answers)), new Set([null]));
        doesNotMatch(extension.host.log, /ASSERTION|alive/);
    });

    test('the application is killed before, during and after "add"', async () => {
        await playRounds(times(200), async (here, round) => {
            const random = numbers(seed + round);
            const moment = ['before', 'during', 'after'][round % 3];
            const where = `seed ${seed}, round ${round}, killed ${moment} "add"`;
            const url = name => server.url(`kill/${round}/${name}`);
            const pid = await here.serve();
            const extension = here.extension();
            checkAnswers([await extension.reach()], ['nothing that can be downloaded'], where);
            const kill = () => process.kill(pid, 'SIGKILL');
            if (moment === 'before')
                kill();
            const answers = Array.from({ length: 1 + random.below(5) }, (_, i) => extension.download(url(i)));
            if (moment === 'during') {
                spin(random.below(2000));
                kill();
            }
            const results = await Promise.all(answers);
            checkAnswers(results, moment === 'after' ? ['1'] : ['1', 'Connection failure'], where);
            if (moment === 'after')
                kill();
            // It is launched again, and works; what was sent before its end was noticed has failed.
            let tries = 0;
            while ((await extension.download(url(`last ${++tries}`))).error === 'Connection failure');
            // What was added is finished by the next application.
            const added = results.flatMap(({ result }, i) => result === '1' ? [`${url(i)}\t`] : []);
            await until(async () => {
                const finished = (await here.kov('jobs')).split('\n').filter(line => /^\d+\tfinished/.test(line));
                return [...added, `last%20${tries}\t`].every(each => finished.some(line => line.includes(each)));
            }, where);
            await extension.end();
        });
    });

    scene('a hung application answers when it goes on', ['kov'], async here => {
        const pid = await here.serve();
        const extension = here.extension();
        await extension.reach();
        process.kill(pid, 'SIGSTOP');
        let answered = 0;
        const answers = Array.from({ length: 20 }, async (_, i) => {
            const answer = await extension.download(server.url(`hung/${i}`));
            ++answered;
            return answer;
        });
        await pause(200);
        strictEqual((await extension.ask('key_state')).error, '');
        strictEqual(answered, 0);
        process.kill(pid, 'SIGCONT');
        checkAnswers(await Promise.all(answers), ['1'], 'resumed');
        await until(() => answers.every((_, i) => server.count(`hung/${i}`) === 1), 'the downloads');
        await extension.end();
    });

    for (const [what, leave] of [
        ['is killed', extension => extension.host.kill()],
        ['loses its input', extension => extension.end()],
    ]) {
        scene(`a host that ${what} in the middle of a frame does not harm the application`, ['kov'], async here => {
            const pid = await here.serve();
            const extension = here.extension();
            await extension.reach();
            process.kill(pid, 'SIGSTOP');
            const answer = extension.download({ url: server.url('half'), httpPostData: 'x'.repeat(8 * mebibyte) });
            // By the second answer the host has come to write what the socket takes.
            await extension.ask('key_state');
            await extension.ask('key_state');
            await leave(extension);
            strictEqual(await answer, null);
            process.kill(pid, 'SIGCONT');
            const next = here.extension();
            checkAnswers([await next.download(server.url(`after ${what}`))], ['1'], what);
            await next.end();
            deepStrictEqual(here.sandbox.running('kov'), [pid]);
            strictEqual(server.count('half'), 0);
        });
    }

    test('what is followed at once by the end of the input reaches the application', async () => {
        await playRounds(times(500), async (here, round) => {
            await here.serve();
            const extension = here.extension();
            await extension.reach();
            if (round % 2)
                extension.download(server.url(`end/${round}`));
            else
                extension.ask('kov_json_task', { json: '{}' }, `${1000 + round}`);
            await extension.end();
            await until(() => round % 2 ? server.count(`end/${round}`) === 1
                : here.log.includes(`JSON request ${1000 + round}\n`), `round ${round}`);
        });
    });

    scene('10,000 downloads in one task', ['kov'], async here => {
        // None has a file: making and deleting thousands is another program's test.
        const paths = Array.from({ length: times(10_000) }, (_, i) => `none/${i}`);
        const extension = here.extension();
        checkAnswers([await extension.download(...paths.map(path => server.url(path)))], ['1'], 'many');
        let seen = 0;
        await until(() => {
            while (server.count(paths[seen]) > 0)
                ++seen;
            return seen === paths.length;
        }, 'all downloads');
        await extension.end();
    });

    scene('a "create_downloads" of 64 MiB', ['kov'], async here => {
        const httpPostData = 'data='.padEnd(64 * mebibyte, '0123456789abcdef~');
        const extension = here.extension();
        checkAnswers([await extension.download({ url: server.url('big'), httpPostData })], ['1'], 'big');
        await until(() => server.posted.has('/big'), 'what was posted');
        strictEqual(server.posted.get('/big'), createHash('sha256').update(httpPostData).digest('hex'));
        await extension.end();
    });

    scene('20 hosts at once share one application and one settings file', ['kov'], async here => {
        // Tells of each application that was launched, and how it ended.
        renameSync(here.program('kov'), here.program('kov-real'));
        script('echo began >> "$0.log"; "$0-real" "$@"; echo $? >> "$0.log"', 0o755)(here);
        const extensions = Array.from({ length: 20 }, () => here.extension());
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
        await until(() => here.sandbox.running('kov-real').length === 1, 'one application to stay');
        await Promise.all(extensions.map(extension => extension.end()));
        await here.kov('quit');
        let endings;
        await until(() => {
            const lines = readFileSync(here.program('kov.log'), 'utf8').trim().split('\n');
            endings = lines.filter(line => line !== 'began');
            return endings.length * 2 === lines.length;
        }, 'all applications to end');
        deepStrictEqual(new Set(endings), new Set(['0']));

        // With nobody serving, the settings come from the file.
        const last = here.extension();
        await last.querySettings();
        ok(last.hasSettings(values), JSON.stringify(last.settings.current));
        await last.end();
        const files = readdirSync(here.sandbox.home, { recursive: true }).filter(name => name.endsWith('/db.sqlite'));
        strictEqual(files.length, 1, `${files}`);
    });

    scene('the application and the extension change settings at the same moment', ['kov'], async here => {
        const random = numbers(seed);
        await here.serve();
        const extension = here.extension();
        await extension.reach();
        await extension.querySettings();
        for (let round = 1; round <= times(60); ++round) {
            const where = `seed ${seed}, round ${round}`;
            const told = here.kov('set', 'WbDownloadsUnwantedHostsList', `h${round}`);
            await pause(random.below(sanitized ? 300 : 30));
            await extension.settings.change({ 'monitor.skipExtensions': `x${round}` });
            await told;
            await until(() => extension.hasSettings({ skipExtensions: `x${round}`, skipServers: `h${round}` }), where);
            match(await here.kov('list'), new RegExp(`ExtensionsList=x${round}\n(.*\n)*?.*HostsList=h${round}\n`), where);
        }
        await extension.end();
    });
});
