// The life of the packages: installed on a system where the browsers are already in use, a download in
// each browser, and removed without a trace. KOVALO_PACKAGES is their folder. Changes the machine.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync, readdirSync, readlinkSync, rmSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { after, before, test } from 'node:test';
import puppeteer from 'puppeteer-core';
import { until } from '../../../tools/drivers/hostprocess.mjs';
import { Sandbox } from '../../../tools/drivers/sandbox.mjs';
import { WebServer } from '../../../tools/drivers/webserver.mjs';
import { table } from '../support/registered.mjs';

const sandbox = new Sandbox();
const environment = sandbox.environment();
const browsersOwn = sandbox.folder;
let server;

const say = (program, ...args) => execFileSync(program, args, {
    env: { ...environment, DEBIAN_FRONTEND: 'noninteractive' }, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'],
    maxBuffer: 2 ** 28,
});
const installed = program => readdirSync('/proc').filter(each => {
    try {
        return readlinkSync(`/proc/${each}/exe`) === program;
    } catch {
        return false; // no process, or one that has just ended
    }
});
const installedHosts = () => installed('/usr/lib/kovalo/wenativehost');
/** All places where packages may leave files, except dpkg's and apt's own. */
const files = () => say('find', '/etc', '/usr', '/var', '(', '-path', '/var/lib/dpkg', '-o', '-path', '/var/lib/apt',
                        '-o', '-path', '/var/cache', '-o', '-path', '/var/log', ')', '-prune', '-o', '-print')
    .split('\n');

const differences = (some, others) => {
    const known = new Set(others);
    return some.filter(each => !known.has(each));
};

const launchers = {
    chromium() {
        const userDataDir = join(sandbox.home, '.config/chromium');
        if (!existsSync(userDataDir)) {
            mkdirSync(join(userDataDir, 'Default'), { recursive: true });
            writeFileSync(join(userDataDir, 'Default/Preferences'), JSON.stringify({
                download: { default_directory: browsersOwn, prompt_for_download: false },
            }));
        }
        return puppeteer.launch({
            executablePath: '/usr/bin/chromium', // the wrapper, which loads system-wide extensions
            enableExtensions: true,
            pipe: true,
            userDataDir,
            env: environment,
            args: ['--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking'],
        });
    },
    firefox() {
        const userDataDir = join(sandbox.home, '.mozilla/firefox/profile');
        mkdirSync(userDataDir, { recursive: true });
        return puppeteer.launch({
            browser: 'firefox',
            executablePath: '/usr/bin/firefox-esr',
            userDataDir,
            env: environment,
            extraPrefsFirefox: {
                'browser.download.dir': browsersOwn,
                'browser.download.folderList': 2,
                // Firefox's defaults; under automation it would not load system-wide extensions.
                'extensions.autoDisableScopes': 3,
                'extensions.enabledScopes': 15,
            },
        });
    },
};

let filesBefore;
before(async () => {
    server = await WebServer.start();
    for (const launch of Object.values(launchers))
        await (await launch()).close();
    filesBefore = files();
    const folder = process.env.KOVALO_PACKAGES;
    say('apt-get', 'install', '-y', '-q', '--no-install-recommends',
        ...readdirSync(folder).filter(each => each.endsWith('.deb')).map(each => join(folder, each)));
});
after(async () => {
    await server?.stop();
    sandbox.remove();
});

for (const [name, launch] of Object.entries(launchers)) {
    test(`${name} hands its first download over`, async () => {
        const browser = await launch();
        try {
            const page = await browser.newPage();
            await page.goto(server.pageUrl);
            await until(() => installedHosts().length > 0, 'the browser to start the host');
            // Not by the mouse: the help page, which the extension opens, may be in front by now.
            await page.evaluate(() => document.getElementById('file').click());
            const whole = server.content('/files/data.bin');
            await until(() => {
                const names = existsSync(sandbox.downloads) ? readdirSync(sandbox.downloads) : [];
                const file = names.map(each => join(sandbox.downloads, each)).find(each => readFileSync(each).equals(whole));
                rmSync(file ?? '', { force: true });
                return file;
            }, 'the download to land');
        } finally {
            await browser.close();
        }
        await until(() => installedHosts().length === 0, 'the host to end with its browser');
    });
}

test('the page and the doctor name a policy that forbids the host', async () => {
    const policy = '/etc/chromium/policies/managed/kovalo.json';
    const made = mkdirSync(dirname(policy), { recursive: true }) ?? policy;
    writeFileSync(policy, JSON.stringify({ NativeMessagingBlocklist: ['*'] }));
    const browser = await launchers.chromium();
    try {
        const page = await browser.newPage();
        const { ids: [origin] } = table.families.chromium;
        await page.goto(`${origin}help.html`);
        await page.waitForFunction(
            () => document.querySelector('[data-step="host"].broken')?.innerText.includes('administers this computer'),
            { timeout: 60_000 });
        const { chains } = JSON.parse(say('sh', '-c', 'kovalo-host doctor chromium --json; [ $? = 1 ]'));
        deepStrictEqual(chains.flatMap(each => each.links).filter(each => each.state === 'broken').map(each => each.link), ['policies']);
    } finally {
        await browser.close();
        rmSync(made, { recursive: true });
    }
});

test('bash completes commands and browsers', () => {
    const complete = (...words) => say('bash', '-c',
        '. "/usr/share/bash-completion/completions/$1"; COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); _kovalo "$1"; echo "${COMPREPLY[@]}"',
        'bash', ...words).trim();
    strictEqual(complete('kovalo-host', 'unr'), 'unregister');
    strictEqual(complete('kovalo-host', 'doctor', 'firef'), 'firefox');
    strictEqual(complete('kovalo-host', 'register', '--flatp'), '--flatpak');
    strictEqual(complete('kov', 'qu'), 'quit');
});

test('the doctor finds no fault, and a purge removes all but the running service', () => {
    ok(say('kovalo-host', 'doctor').includes('A download would arrive.'));
    const [service] = installed('/usr/lib/kovalo/kov');
    say('man', '--warnings', 'kovalo-host');
    say('apt-get', 'purge', '-y', '-q', 'kovalo*');
    deepStrictEqual(installed('/usr/lib/kovalo/kov (deleted)'), [service]);
    process.kill(Number(service));
    const filesAfter = files();
    deepStrictEqual(differences(filesAfter, filesBefore), []);
    // dpkg removes empty folders that belong to no package.
    deepStrictEqual(differences(filesBefore, filesAfter).filter(each => each !== '/etc/opt'), []);
});
