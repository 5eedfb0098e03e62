// Breaks each link between a real browser and a finished download. The extension's page must name the
// broken link, with the same text in every browser, and so must the doctor.

import { deepStrictEqual, match, ok, strictEqual } from 'node:assert';
import { execFile } from 'node:child_process';
import { existsSync, readFileSync, renameSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { promisify } from 'node:util';
import { browserNames, hostProgram } from '../../../tools/drivers/browsers.mjs';
import { until } from '../../../tools/drivers/hostprocess.mjs';
import { manifestName } from '../support/registered.mjs';
import { BrowserFixture } from '../support/browserfixture.mjs';

const manifestFolders = { chromium: '.config/chromium/NativeMessagingHosts', firefox: '.mozilla/native-messaging-hosts' };
const script = text => `#!/bin/sh\n${text}\n`;
const missing = /not installed, or not registered/;
const notStarted = /could not be started, or ended at once\.$/;

/** The manifest with other members. */
const rewrite = members => ({ manifest }) =>
    writeFileSync(manifest, JSON.stringify({ ...JSON.parse(readFileSync(manifest)), ...members }));
/** A host that is another program. */
const hostThat = text => scene => {
    writeFileSync(join(scene.fixture.sandbox.programs, 'other'), script(text), { mode: 0o755 });
    rewrite({ path: join(scene.fixture.sandbox.programs, 'other') })(scene);
};
const application = text => ({ fixture }) =>
    writeFileSync(join(fixture.sandbox.programs, 'kov'), script(text), { mode: 0o755 });
/** Breaks something after the application was moved away. */
const withoutApplication = breakIt => async scene => {
    const program = join(scene.fixture.sandbox.programs, 'kov');
    renameSync(program, `${program}-real`);
    await scene.end('kov-real');
    // If it had not noticed that yet, the error would be that the connection broke.
    await scene.restartHost();
    breakIt(scene);
};

/** The doctor's name of the link, how to break it, the page's text, and its fix. */
const hostRows = [
    ['manifest-found', ({ manifest }) => rmSync(manifest), missing, 'register'],
    ['manifest-ids', rewrite({ allowed_origins: ['chrome-extension://aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/'], allowed_extensions: ['a@b'] }),
     { chromium: /not allowed to use/, firefox: missing }, 'register'],
    ['host-there', rewrite({ path: '/usr/lib/gone/wenativehost' }), { chromium: missing, firefox: notStarted }],
    ['host-answers', hostThat('exit 3'), notStarted, 'doctor'],
    // One that ends at once may be gone before Firefox has read its output.
    ['host-answers', hostThat('echo Hello world; exec cat >/dev/null'), /Another program is in the place/, 'register'],
    ['host-answers', hostThat('cat >/dev/null'), /started but does not answer/, 'doctor'],
];
/** The same for the application, which runs until then. */
const applicationRows = [
    ['application-there', withoutApplication(() => {}), /not installed/, 'kovalo-host doctor'],
    ['application-running', withoutApplication(application('exit 1')), /did not start, or ended/, 'KOVALO_LOG_LEVEL=9 kov -service'],
    ['application-answers', ({ fixture }) => {
        for (const pid of fixture.sandbox.running('kov'))
            process.kill(pid, 'SIGSTOP');
    }, /does not answer/, 'kov quit'],
    ['downloads-folder', ({ fixture }) => {
        rmSync(fixture.sandbox.downloads, { recursive: true, force: true });
        writeFileSync(fixture.sandbox.downloads, '');
    }, /did not take the download: .*Downloads/, 'kovalo-host doctor'],
];

class Scene {
    static async start(name) {
        const self = new Scene();
        self.name = name;
        self.fixture = await BrowserFixture.start(name, ['kov', 'kovalo-host']);
        self.manifest = join(self.fixture.sandbox.home, manifestFolders[name], manifestName);
        self.page = await self.fixture.browser.openExtensionPage('help.html');
        self.popup = await self.fixture.browser.openExtensionPage('popup.html');
        self.knownToDoctor = await self.brokenLinks(); // Firefox does not list temporary add-ons
        return self;
    }

    /** Clicks a button of the page, and resolves with the resulting steps. */
    async click(button) {
        await this.page.evaluate(id => document.getElementById(id).click(), button);
        await until(() => this.page.evaluate(() => !document.getElementById('again').disabled), `${button} to be done`);
        return this.steps();
    }

    steps() {
        return this.page.evaluate(() => Object.fromEntries([...document.querySelectorAll('#steps li')].map(each => [
            each.dataset.step,
            { state: each.classList[0], words: each.querySelector('div span').textContent, line: each.querySelector('code')?.textContent },
        ])));
    }

    async run(...args) {
        const { sandbox } = this.fixture;
        return (await promisify(execFile)(join(sandbox.programs, 'kovalo-host'), args, { env: sandbox.environment() })
            .catch(error => error)).stdout;
    }

    async brokenLinks() {
        return JSON.parse(await this.run('doctor', this.name, '--json')).chains
            .flatMap(each => each.links).filter(each => each.state === 'broken').map(each => each.link)
            .filter(each => !this.knownToDoctor?.includes(each));
    }

    /** Kills all processes of a program. */
    async end(program) {
        const { sandbox } = this.fixture;
        const ended = sandbox.running(program);
        for (const pid of ended)
            process.kill(pid, 'SIGKILL');
        await until(() => !sandbox.running(program).some(pid => ended.includes(pid)), `${program} to end`);
    }

    /** For a host that must not be restarted. */
    async endHost() {
        await this.end(hostProgram);
        await until(async () => (await this.steps()).host.state !== 'ok', 'the page to notice');
    }

    async restartHost() {
        await this.end(hostProgram);
        await until(() => this.fixture.sandbox.running(hostProgram).length > 0, 'the next host');
    }

    /** Puts the application and its folder back. */
    mendApplication() {
        const { sandbox } = this.fixture;
        const program = join(sandbox.programs, 'kov');
        if (existsSync(`${program}-real`))
            renameSync(`${program}-real`, program);
        for (const pid of sandbox.running('kov'))
            process.kill(pid, 'SIGCONT');
        if (statSync(sandbox.downloads, { throwIfNoEntry: false })?.isFile())
            rmSync(sandbox.downloads);
    }

    async expect(link, step, words, button) {
        const [steps, links] = await Promise.all([this.click(button), this.brokenLinks()]);
        deepStrictEqual(links, [link]);
        const broken = Object.keys(steps).filter(each => steps[each].state === 'broken');
        deepStrictEqual(broken, [step], JSON.stringify(steps));
        match(steps[step].words, words[this.name] ?? words);
        return steps[step].line;
    }
}

describe('the page and the doctor', { concurrency: browserNames.length, timeout: 360_000 }, () => {
    for (const name of browserNames) {
        describe(`in ${name}`, { concurrency: 1 }, () => {
            let scene;
            before(async () => { scene = await Scene.start(name); });
            after(() => scene?.fixture.end());

            test('report no fault, and the test file arrives', async () => {
                deepStrictEqual(scene.knownToDoctor, name === 'firefox' ? ['extension-installed'] : []);
                const steps = await scene.click('test');
                ok(Object.values(steps).every(each => each.state === 'ok'), JSON.stringify(steps));
                const file = join(scene.fixture.sandbox.downloads, 'kovalo-test.txt');
                await until(() => existsSync(file), 'the file to land');
                rmSync(file);
            });

            for (const [link, breakIt, words, command] of hostRows) {
                test(`name the host: ${link}, ${words.source ?? words[name].source}`, async () => {
                    const healthy = readFileSync(scene.manifest);
                    try {
                        breakIt(scene);
                        await scene.endHost();
                        const line = await scene.expect(link, 'host', words, 'again');
                        if (command)
                            strictEqual(line, `kovalo-host ${command}`);
                        if (line === 'kovalo-host register') {
                            await scene.run('register');
                            // Newer versions of Firefox have two folders; breaking one of them is enough.
                            rmSync(join(scene.fixture.sandbox.home, '.config/mozilla/native-messaging-hosts'), { recursive: true, force: true });
                        } else {
                            writeFileSync(scene.manifest, healthy);
                        }
                        strictEqual((await scene.click('again')).host.state, 'ok');
                    } finally {
                        writeFileSync(scene.manifest, healthy);
                    }
                });
            }

            test('name the option that leaves downloads to the browser', async () => {
                // Refused until the host, which has just been connected, has sent the settings.
                await scene.fixture.untilThere(() => scene.fixture.ask(
                    'changeSettings', { changes: { 'monitor.enable': false } }), Boolean);
                await until(async () => (await scene.steps()).catching?.state === 'broken', 'the page to say so');
                // The host answers before it has stored them.
                const untilBroken = (...links) => until(async () => String(await scene.brokenLinks()) === String(links),
                                                        `the doctor to name ${links}`);
                await untilBroken('catching');
                await scene.fixture.ask('changeSettings', { changes: { 'monitor.enable': true } });
                await untilBroken();
            });

            for (const [link, breakIt, words, line] of applicationRows) {
                test(`name the application: ${link}`, async () => {
                    try {
                        await breakIt(scene);
                        strictEqual(await scene.expect(link, 'application', words, 'test'), line);
                    } finally {
                        scene.mendApplication();
                    }
                    strictEqual((await scene.click('test')).download.state, 'ok');
                });
            }

            test('name missing access to pages, without which downloads stay in the browser', async () => {
                await scene.fixture.browser.withholdSites();
                await until(async () => (await scene.steps()).access.state === 'broken', 'the page to say so');
                match((await scene.fixture.ask('status')).problem, /withholds access to pages/);
                strictEqual(await scene.popup.evaluate(() => document.getElementById('grant').hidden), false);
                await scene.fixture.page.bringToFront();
                await scene.fixture.page.click('#file');
                const file = join(scene.fixture.sandbox.downloads, 'data.bin');
                const whole = scene.fixture.server.content('/files/data.bin');
                await scene.fixture.until(() => existsSync(file) && readFileSync(file).equals(whole), 'the browser to download it');
                await scene.fixture.browser.close(); // Chromium writes its files late
                deepStrictEqual(await scene.brokenLinks(), name === 'firefox' ? [] : ['site-access']);
            });
        });
    }
});
