// Counts with valgrind the instructions of some of the host's operations, which do not depend on the
// machine's load, and compares them with the table in docs/performance.md. For each one that has become
// worse, prints a line that begins with "WARNING:", without failing.
//
// node tools/dev/instructions.mjs [BINARY-FOLDER-OF-THE-FLOORS]

import { readFileSync } from 'node:fs';
import { availableParallelism } from 'node:os';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { serveAnswers } from '../drivers/answeringapplication.mjs';
import { HostProcess, handshakeTask } from '../drivers/hostprocess.mjs';
import { Sandbox } from '../drivers/sandbox.mjs';

const root = join(dirname(fileURLToPath(import.meta.url)), '../..');
const tablePath = 'docs/performance.md';
/** By which share a count may be worse than in the table. */
const tolerance = 0.03;

function download(number, own = '') {
    const page = `https://www.example.org/downloads/list?page=17${own}`;
    return {
        url: `http://127.0.0.1:9/folder/${number}/archive-1.2.3.tar.gz`,
        suggestedName: `archive-${number}.tar.gz`,
        httpReferer: page,
        documentUrl: page,
        userAgent: `Mozilla/5.0 (X11; Linux x86_64; rv:128.0) Gecko/20100101 Firefox/128.0${own}`,
        httpCookies: `session=0123456789abcdef0123456789abcdef; theme=dark; lang=en-US${own}`,
        originalUrl: `https://www.example.org/get/${number}`,
        fileSize: '123456789',
    };
}

function downloadsTask(count, areDifferent = false) {
    const item = Array.from({ length: count }, (_, i) => download(i, areDifferent ? `${i}` : ''));
    return {
        type: 'create_downloads',
        create_downloads: {
            downloads: { item }, catchedDownloads: '1', waitResponse: '1', ignoreSettings: '1',
        },
    };
}

/** The number of instructions of a program from its start to its end, with these tasks. */
async function instructionsOf(program, tasks) {
    const sandbox = new Sandbox();
    const server = await serveAnswers(sandbox.temporary);
    const valgrind = new HostProcess(
        Object.assign(Object.create(sandbox), { host: 'valgrind' }),
        {
            args: ['--tool=callgrind', '--callgrind-out-file=/dev/null', program ?? sandbox.host],
            env: { QT_HASH_SEED: '0' },
        });
    for (const task of tasks)
        await valgrind.ask(task);
    valgrind.closeInput();
    await valgrind.end();
    server.close();
    sandbox.remove();
    const collected = valgrind.log.match(/Collected : (\d+)/);
    if (!collected)
        throw new Error(`valgrind counted nothing\n${valgrind.log}`);
    return Number(collected[1]);
}

const handshakes = number => Array.from({ length: number }, () => handshakeTask());
const caught = number => Array.from({ length: number }, () => downloadsTask(1));

/** The difference between "more" and "base", per item. */
const rows = [
    { name: 'start and end', more: [] },
    { name: 'handshake', base: handshakes(1), more: handshakes(101), per: 100 },
    { name: 'caught download', base: caught(1), more: caught(51), per: 50 },
    {
        name: 'download in a task of 100',
        base: caught(1), more: [...caught(1), ...Array(5).fill(downloadsTask(100))], per: 500,
    },
    {
        name: 'download in a task of 2,000',
        base: caught(1), more: [...caught(1), downloadsTask(2000)], per: 2000,
    },
    {
        name: 'the same with different texts',
        base: caught(1), more: [...caught(1), downloadsTask(2000, true)], per: 2000,
    },
];
const floors = process.argv[2] && resolve(process.argv[2]);
if (floors) {
    rows.push(
        { name: 'floor: start and end', program: join(floors, 'floor'), more: [] },
        { name: 'floor with Core alone: start and end', program: join(floors, 'corefloor'), more: [] },
        {
            name: 'floor: message',
            program: join(floors, 'floor'), base: handshakes(1), more: handshakes(101), per: 100,
        });
}

/** The counts of the table, by their names. */
function tabled() {
    const text = readFileSync(join(root, tablePath), 'utf8');
    const lines = [...text.matchAll(/^\| ([^|]+?) +\| +([\d,]+) +\|/gm)];
    return new Map(lines.map(([, name, number]) => [name, Number(number.replaceAll(',', ''))]));
}

const counts = new Map();
const wanted = rows.flatMap(({ program, base, more }) => [base, more].filter(Boolean)
    .map(tasks => ({ program, tasks, key: `${program} ${JSON.stringify(tasks)}` })));
const different = [...new Map(wanted.map(each => [each.key, each])).values()];
await Promise.all(Array.from({ length: availableParallelism() }, async () => {
    for (let each = different.pop(); each; each = different.pop())
        counts.set(each.key, await instructionsOf(each.program, each.tasks));
}));

const known = tabled();
const warnings = [];
for (const { name, program, base, more, per = 1 } of rows) {
    const of = tasks => (tasks ? counts.get(`${program} ${JSON.stringify(tasks)}`) : 0);
    const now = Math.round((of(more) - of(base)) / per);
    const before = known.get(name);
    const change = before ? now / before - 1 : 0;
    const shown = before ? `${change < 0 ? '' : '+'}${(change * 100).toFixed(1)} %` : 'not in the table';
    console.log(`| ${name.padEnd(38)} | ${now.toLocaleString('en-US').padStart(12)} | ${shown}`);
    if (change > tolerance)
        warnings.push(`WARNING: "${name}" takes ${shown} instructions beside ${tablePath}`);
}
for (const warning of warnings)
    console.log(warning);
