// Runs clang-tidy and clazy over every source that the "lint" preset compiles.
//
// Most of the time goes into Qt's headers, so several sources are analysed as one translation unit, and
// separately only if they do not compile together.
//
// Clean results are cached by content (sources, the project headers that they include, flags,
// configuration, versions of the tools), and shared by all clones. --all ignores the cache.

import { execFile, execFileSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { cpus, homedir } from 'node:os';
import { basename, dirname, join, relative } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = dirname(dirname(dirname(fileURLToPath(import.meta.url))));
const buildDir = join(root, 'build/lint');
const batchDir = join(buildDir, 'batches');
const cacheDir = join(process.env.XDG_CACHE_HOME || join(homedir(), '.cache'), 'kovalo-lint');
const batchSize = 20;
const everything = process.argv.includes('--all');

function hash(...parts) {
    const digest = createHash('sha256');
    for (const part of parts)
        digest.update(part).update('\0');
    return digest.digest('hex');
}

/**
 * The sources to analyse, each with its compiler flags (without the compiler, input and output), and the
 * CMake target that it belongs to.
 */
function compiledSources() {
    const sources = [];
    for (const entry of JSON.parse(readFileSync(join(buildDir, 'compile_commands.json')))) {
        const file = relative(root, entry.file);
        if (file.startsWith('build/') || file.startsWith('..'))
            continue;
        const flags = entry.command.split(' ').slice(1).map(flag => flag.replace(/\\(.)/g, '$1'));
        const [, object] = flags.splice(flags.indexOf('-o'), 2);
        flags.splice(flags.indexOf('-c'), 2);
        sources.push({ file, flags, target: object.replace(/\.dir\/.*/, '') });
    }
    // Some sources are compiled into several programs.
    const kinds = new Map(sources.map(source => [[source.file, ...ownFlags(source)].join(' '), source]));
    return [...kinds.values()].sort((a, b) => (a.file < b.file ? -1 : 1));
}

/** The text of a source and of every project header that it includes, each once. */
class IncludeReader {
    #headers = new Map();
    #contents = new Map();

    constructor(headers) {
        for (const header of headers) {
            const name = basename(header);
            this.#headers.set(name, [...(this.#headers.get(name) ?? []), header]);
        }
    }

    textOf(file) {
        const reached = new Set([file]);
        for (const each of reached) {
            for (const include of this.#read(each).includes) {
                for (const header of this.#headers.get(include) ?? [])
                    reached.add(header);
            }
        }
        return [...reached].sort().map(each => each + '\0' + this.#read(each).text).join('\0');
    }

    #read(file) {
        if (!this.#contents.has(file)) {
            const text = readFileSync(join(root, file), 'utf8');
            const includes = [...text.matchAll(/^\s*#\s*include\s+["<]([^">]+)[">]/gm)]
                .map(match => basename(match[1]));
            this.#contents.set(file, { text, includes });
        }
        return this.#contents.get(file);
    }
}

function toolKey() {
    const versions = execFileSync('dpkg-query',
                                  ['-W', 'clang-14', 'clang-tidy-14', 'clazy', 'qt6-base-dev',
                                   'libstdc++-12-dev', 'picojson-dev'], { encoding: 'utf8' });
    return hash(versions, readFileSync(join(root, '.clang-tidy')));
}

function run(program, args) {
    return new Promise(resolve => {
        execFile(program, args, { cwd: root, maxBuffer: 1 << 28 }, (error, stdout, stderr) => {
            const noise = /^(\d+ warnings?( and \d+ errors?)? generated|Suppressed|Use -header-filter|\d+ warnings? treated as)/;
            const text = (stdout + stderr).split('\n').filter(line => !noise.test(line)).join('\n');
            resolve({ clean: !error && !/(warning|error): /.test(text), text: text.trim() });
        });
    });
}

const ownFiles = `^${root}/(src|tools|tests|fuzz|benchmarks)/`;
const tools = {
    'clang-tidy': (file, flags, together) =>
        run('clang-tidy', ['--quiet', '--header-filter=' + ownFiles,
                           ...(together ? ['--checks=-bugprone-suspicious-include'] : []),
                           file, '--', ...flags]),
    clazy: (file, flags) =>
        run('clazy-standalone', ['-checks=level1', '-header-filter=' + ownFiles, file, '--', ...flags]),
};

const isMocFolder = flag => flag.endsWith('_autogen/include');
const isShareable = flag => /^(-I|-DQT_\w+_LIB|-isystem$|\/usr\/)/.test(flag);
const ownFlags = source => source.flags.filter(flag => !isShareable(flag));
const fuzzFunction = 'LLVMFuzzerTestOneInput';

/** Runs moc, whose output some sources include, without building anything else. */
async function generateMocOutput(sources) {
    // Not every AutogenInfo.json: those of removed targets stay in the build folder.
    const folders = new Set(sources.flatMap(source => source.flags.filter(isMocFolder))
        .map(flag => dirname(flag.slice('-I'.length))));
    for (const folder of folders) {
        const info = join(dirname(folder), 'CMakeFiles', `${basename(folder)}.dir`, 'AutogenInfo.json');
        const result = await run('cmake', ['-E', 'cmake_autogen', info, 'Debug']);
        if (!result.clean)
            throw new Error(`moc failed for ${info}\n${result.text}`);
    }
}

/** Several sources as one translation unit, without the main() of test programs. */
function unityOf(batch) {
    const noTestMain = ['#include <QTest>', '#undef QTEST_GUILESS_MAIN', '#define QTEST_GUILESS_MAIN(test)'];
    const sources = batch.flatMap((source, index) => [
        `#undef ${fuzzFunction}`, `#define ${fuzzFunction} ${fuzzFunction}${index}`,
        `#include "${join(root, source.file)}"`,
    ]);
    return [...(batch[0].isTest ? noTestMain : []), ...sources, ''].join('\n');
}

async function readBatch(tool, batch) {
    if (batch.length === 1)
        return tool(batch[0].file, batch[0].flags, false);
    const name = join(batchDir, hash(tool.name, ...batch.map(source => source.file)).slice(0, 16) + '.cpp');
    writeFileSync(name, unityOf(batch));
    // A parameter may have the name of a constant in another source.
    const flags = [...batch[0].flags, ...batch.flatMap(source => source.flags.filter(isShareable)), '-Wno-shadow'];
    const together = await tool(name, flags, true);
    if (!/: (fatal )?error: (?!.*-warnings-as-errors\])/.test(together.text))
        return together;
    const results = []; // names of two test programs conflict
    for (const source of batch)
        results.push(await tool(source.file, source.flags, false));
    return {
        clean: results.every(result => result.clean),
        text: results.map(result => result.text).filter(Boolean).join('\n'),
    };
}

/**
 * Sources that are analysed together: those of one library, as in a unity build; and the test programs, and
 * the fuzz targets, of which each has one source.
 */
function batches(sources) {
    const groups = new Map();
    for (const source of sources) {
        const text = readFileSync(join(root, source.file), 'utf8');
        source.isTest = /^QTEST_GUILESS_MAIN\(/m.test(text);
        const kind = source.isTest ? 'test' : text.includes(fuzzFunction) ? 'fuzz' : source.target;
        const key = [kind, ...ownFlags(source)].join(' ');
        groups.set(key, [...groups.get(key) ?? [], source]);
    }
    return [...groups.values()].flatMap(group => Array.from(
        { length: Math.ceil(group.length / batchSize) },
        (_, index) => group.slice(index * batchSize, (index + 1) * batchSize)));
}

async function main() {
    const listed = execFileSync('git', ['ls-files', '--cached', '--others', '--exclude-standard', '*.h'],
                                { cwd: root, encoding: 'utf8' });
    const reader = new IncludeReader(listed.split('\n').filter(file => file && existsSync(join(root, file))));
    const sources = compiledSources();
    await generateMocOutput(sources);
    const key = toolKey();
    const stampOf = (tool, batch) => join(cacheDir, hash(
        tool, key, ...batch.map(source => reader.textOf(source.file)
                                    + source.flags.join(' ').replaceAll(root, '.'))));
    const jobs = Object.entries(tools).flatMap(([name, tool]) => batches(sources).map(batch => ({
        what: `${name} ${batch.map(source => source.file).join(' ')}`,
        stamp: stampOf(name, batch),
        work: () => readBatch(tool, batch),
    })));
    mkdirSync(batchDir, { recursive: true });
    mkdirSync(cacheDir, { recursive: true });
    const open = jobs.filter(job => everything || !existsSync(job.stamp));
    console.log(`${sources.length} sources; of ${jobs.length} readings ${open.length} are new`);

    const started = Date.now();
    let done = 0;
    let unclean = 0;
    let shown = 0;
    const queue = [...open];
    async function worker() {
        for (let job = queue.shift(); job; job = queue.shift()) {
            const result = await job.work();
            ++done;
            if (result.clean) {
                writeFileSync(job.stamp, '');
            } else {
                ++unclean;
                console.log(`-- ${job.what}\n${result.text}`);
            }
            const tenth = Math.floor(10 * done / open.length);
            if (tenth > shown) {
                shown = tenth;
                console.log(`[${done}/${open.length}] ${Math.round((Date.now() - started) / 1000)} s`);
            }
        }
    }
    await Promise.all(cpus().map(worker));
    console.log(`${unclean} of ${jobs.length} readings unclean`);
    process.exitCode = unclean > 0 ? 1 : 0;
}

await main();
