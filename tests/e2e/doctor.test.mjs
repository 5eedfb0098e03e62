// Breaks each link between a browser and a finished download; the doctor must name it.

import { deepStrictEqual, match, ok, strictEqual } from 'node:assert';
import { spawn } from 'node:child_process';
import {
    chmodSync, chownSync, copyFileSync, existsSync, mkdirSync, readFileSync, rmSync, symlinkSync, writeFileSync,
} from 'node:fs';
import { once } from 'node:events';
import { createServer } from 'node:net';
import { dirname, join } from 'node:path';
import { describe, test } from 'node:test';
import { HostProcess, until } from '../../tools/drivers/hostprocess.mjs';
import { RegisteredSandbox, isRoot, manifestName, table, user } from './support/registered.mjs';

const profiles = ['.config/chromium', '.mozilla'];
const chromiumsManifest = sandbox =>
    sandbox.inHome('.config/chromium/NativeMessagingHosts', manifestName);
const firefoxesManifest = sandbox => sandbox.inHome('.mozilla/native-messaging-hosts', manifestName);
/** Where the package installs the extension for a browser. */
const extension = (sandbox, browser) => join(sandbox.system, table.browsers.find(each => each.id === browser).extension);
const database = sandbox => sandbox.inHome('.local/share/Tessmark/Kovalo/db.sqlite');

/** Writes a file to the place where the program looks for it; with mode 0 not even its owner has access. */
function put(path, content, mode = 0o644) {
    mkdirSync(dirname(path), { recursive: true });
    rmSync(path, { recursive: true, force: true });
    writeFileSync(path, content);
    chmodSync(path, mode);
}
const script = text => `#!/bin/sh\n${text}\n`;

/** Changes members of Chromium's manifest. */
const rewrite = members => sandbox => put(chromiumsManifest(sandbox), JSON.stringify(
    { ...JSON.parse(readFileSync(chromiumsManifest(sandbox))), ...members }));
/** Makes Chromium start a different program. */
const hostThat = (content, mode = 0o755) => sandbox => {
    const path = join(sandbox.folder, 'other/wenativehost');
    put(path, content(sandbox), mode);
    copyFileSync(join(sandbox.programs, 'kov'), join(dirname(path), 'kov'));
    rewrite({ path })(sandbox);
};
const policy = (path, policies) => sandbox => put(join(sandbox.system, path), JSON.stringify(policies));
const chromiumsId = new URL(table.families.chromium.ids[0]).host;
/** The browsers' records of the extension, in the profile of a user. */
const inChromium = noted => sandbox => put(sandbox.inHome('.config/chromium/Default/Preferences'), JSON.stringify(
    { extensions: { settings: { [chromiumsId]: noted } } }));
const inFirefox = (noted, origins) => sandbox => {
    const [id] = table.families.firefox.ids;
    put(sandbox.inHome('.mozilla/firefox/a.default/extensions.json'), JSON.stringify({ addons: [{ id, ...noted }] }));
    put(sandbox.inHome('.mozilla/firefox/a.default/extension-preferences.json'), JSON.stringify({ [id]: { origins } }));
};
const application = (...content) => sandbox => put(join(sandbox.programs, 'kov'), ...content);

/** A server in place of the application that accepts connections but does not answer. */
const serverOf = owner => async sandbox => {
    const server = createServer();
    const path = join(sandbox.temporary, `kov6fs${user}`);
    chmodSync(sandbox.temporary, 0o777);
    const self = process.geteuid();
    process.seteuid(owner); // the peer sees the user who called listen()
    server.listen(path);
    process.seteuid(self);
    await once(server, 'listening');
    chmodSync(path, 0o777);
    return () => server.close();
};

/** Another user's server takes the application's socket while the application is being started. */
function serverOfAnotherAtStart(sandbox) {
    const started = sandbox.inHome('started');
    put(join(sandbox.programs, 'kov'), script(`touch "${started}"
until [ -S "$TMPDIR/kov6fs${user}" ]; do sleep 0.1; done
sleep 0.5; echo the name is taken >&2; exit 1`), 0o755);
    const served = until(() => existsSync(started), 'the start').then(() => serverOf(0)(sandbox));
    return async () => (await served)();
}

/** The host keeps its settings in the database. */
async function makeDatabase(sandbox, monitor = { skipServers: 'example.com' }) {
    const host = new HostProcess(sandbox);
    await host.ask({ type: 'post_settings', post_settings: { browser: { monitor } } });
    host.closeInput();
    await host.end();
}

async function lockDatabase(sandbox) {
    await makeDatabase(sandbox);
    const holder = spawn('sqlite3', [database(sandbox)], { stdio: ['pipe', 'pipe', 'inherit'] });
    holder.stdin.write('BEGIN EXCLUSIVE;\n.print locked\n');
    let said = '';
    holder.stdout.on('data', text => { said += text; });
    await until(() => said.includes('locked'), 'the database to be locked');
    return () => holder.kill();
}

async function forbidDatabase(sandbox) {
    await makeDatabase(sandbox);
    chmodSync(database(sandbox), 0);
}
const forbid = name => sandbox => {
    const program = join(sandbox.programs, name);
    put(program, readFileSync(program));
    chownSync(program, user, -1);
};
function makeReadOnly(folder) {
    mkdirSync(folder, { recursive: true });
    chmodSync(folder, 0o500);
}

async function damageDatabase(sandbox) {
    await makeDatabase(sandbox);
    const bytes = readFileSync(database(sandbox));
    put(database(sandbox), bytes.fill(0xa5, 4096));
}

const isFixed = true;
/** The broken link, how to break it, and further arguments or expectations. */
const rows = [
    ['extension-installed', sandbox => rmSync(extension(sandbox, 'firefox')), { says: /apt-get install/ }],
    ['extension-installed', sandbox => {
        rmSync(extension(sandbox, 'chromium'));
        put(join(sandbox.folder, 'extension/manifest.json'), '{}'); // as in the archive
    }, { says: /load the folder .*\/extension on/ }],
    ['extension-installed', inChromium({ location: 8, path: '/usr/share/webext/gone' }), { says: /not loaded/ }],
    ['extension-enabled', inChromium({ disable_reasons: [1] })],
    ['extension-enabled', inChromium({ disable_reasons: 1, state: 0 })],
    ['extension-enabled', inFirefox({ active: false })],
    ['site-access', inChromium({ withholding_permissions: true })],
    ['site-access', inFirefox({ active: true }, [])],
    ['manifest-found', sandbox => rmSync(chromiumsManifest(sandbox)), { isFixed }],
    ['manifest-found', sandbox => rmSync(firefoxesManifest(sandbox)), { isFixed }],
    ['manifest-readable', sandbox => put(chromiumsManifest(sandbox), '{}', 0), { isFixed }],
    ['manifest-readable', sandbox => {
        rmSync(chromiumsManifest(sandbox));
        symlinkSync('/nowhere/else.json', chromiumsManifest(sandbox));
    }, { isFixed }],
    ['manifest-readable', sandbox => {
        rmSync(chromiumsManifest(sandbox));
        mkdirSync(chromiumsManifest(sandbox));
    }, { says: /a folder is in its place; mv -T .* && .* register chromium/ }],
    ['manifest-json', sandbox => put(chromiumsManifest(sandbox), '{"name":'), { isFixed }],
    ['manifest-name', rewrite({ name: 'com.tessmark.other' }), { isFixed }],
    ['manifest-type', rewrite({ type: 'pipe' }), { isFixed }],
    ['manifest-ids', rewrite({ allowed_origins: ['chrome-extension://aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/'] }), { isFixed }],
    ['manifest-path', rewrite({ path: 'wenativehost' }), { isFixed }],
    ['host-there', rewrite({ path: '/home/other/wenativehost' }), { isFixed, says: /\/home\/USER\// }],
    ['host-executable', hostThat(() => script('exit'), 0o644), { isFixed }],
    ['host-executable', forbid('wenativehost'), { also: ['host-executable'], says: /; .*chmod \+x .*wenativehost/ }],
    ['policies', policy('etc/chromium/policies/managed/a.json', { NativeMessagingBlocklist: ['*'] })],
    ['policies', policy('etc/chromium/policies/managed/a.json', { ExtensionInstallBlocklist: ['*'] }),
     { says: /"ExtensionInstallBlocklist" in .*; .*add "[a-p]{32}" to "ExtensionInstallAllowlist"/ }],
    ['policies', policy('etc/chromium/policies/managed/a.json', {
        ExtensionInstallAllowlist: [chromiumsId], ExtensionSettings: { [chromiumsId]: { installation_mode: 'removed' } },
    }), { says: /"ExtensionSettings" in .*; .*allow "[a-p]{32}"/ }],
    ['policies', policy('etc/chromium/policies/managed/a.json',
                        { ExtensionSettings: { '*': { blocked_permissions: ['nativeMessaging'] } } })],
    ['policies', policy('etc/firefox/policies/policies.json',
                        { policies: { ExtensionSettings: { '*': { installation_mode: 'blocked' } } } })],
    ['policies', policy('etc/chromium/policies/managed/a.json', { NativeMessagingUserLevelHosts: false }),
     { also: ['manifest-found'] }],
    ['sandbox', sandbox => { mkdirSync(sandbox.inHome('snap/chromium/common/chromium'), { recursive: true }); }],
    ['sandbox', async sandbox => {
        mkdirSync(sandbox.inHome('.var/app/com.google.Chrome/config/google-chrome'), { recursive: true });
        strictEqual((await sandbox.run(['register', '--flatpak', 'com.google.Chrome'])).status, 0);
    }, { also: ['extension-installed'] }],
    ['libraries', hostThat(sandbox => Buffer.from(
        readFileSync(sandbox.host, 'latin1').replace('libQt6Network.so.6', 'libQt6Notwork.so.6'), 'latin1'))],
    ['host-answers', hostThat(() => script('echo out of luck >&2; exit 3')), { says: /status 3.*out of luck/ }],
    ['host-answers', hostThat(() => script('sleep 60')), { timeout: 1, says: /not answer within 1 s/ }],
    ['host-answers', hostThat(() => script('echo Hello')), { says: /something else/ }],
    ['host-answers', hostThat(() => 'no program'), { says: /cannot be started/ }],
    ['catching', sandbox => makeDatabase(sandbox, { enable: false })],
    ['log', () => {}, { env: { KOVALO_LOG_FILE: '/proc/none/kovalo.log' }, arrives: true }],
    ['portable', sandbox => { mkdirSync(join(sandbox.programs, 'portabledata')); }, { arrives: true }],
    ['sql-driver', sandbox => put(join(sandbox.programs, 'qt.conf'), '[Paths]\nPlugins=/nowhere\n')],
    ['data-folder', sandbox => put(dirname(database(sandbox)), ''), { also: ['application-running'] }],
    ['data-folder', sandbox => makeReadOnly(dirname(dirname(database(sandbox)))),
     { also: ['application-running'], isFixed }],
    ['database-opens', forbidDatabase, { isFixed }],
    ['database-opens', sandbox => put(database(sandbox), 'no database '.repeat(1000))],
    ['database-whole', damageDatabase],
    ['database-unlocked', lockDatabase],
    ['downloads-folder', sandbox => put(sandbox.downloads, '')],
    ['downloads-folder', sandbox => makeReadOnly(sandbox.downloads), { isFixed }],
    ['application-there', sandbox => rmSync(join(sandbox.programs, 'kov'))],
    ['application-executable', forbid('kov'), { isFixed }],
    ['application-running', application(script('echo no room >&2; exit 1'), 0o755), { says: /no room/ }],
    ['application-answers', serverOf(user), { timeout: 1 }],
    ['browser-found', () => {}, { browsers: ['brave'] }],
    // The server is root's then, and the program is not.
    ...isRoot ? [['application-socket', serverOf(0), { says: /serves at \S+kov6fsUSER; sudo rm \S+kov6fsUSER/ }],
                 ['application-running', serverOfAnotherAtStart, { says: /the name is taken/ }]] : [],
];

async function healthySandbox() {
    const sandbox = new RegisteredSandbox(profiles);
    for (const each of ['chromium', 'firefox'])
        put(extension(sandbox, each), '');
    strictEqual((await sandbox.run(['register'])).status, 0);
    return sandbox;
}

async function doctor(sandbox, { browsers = [], timeout = 60, env } = {}, ...options) {
    const result = await sandbox.run(['doctor', ...browsers, '--timeout', timeout, '--root', sandbox.system, ...options], env);
    return { ...result, links: options.includes('--json') ? linksOf(JSON.parse(result.output)) : [] };
}
const linksOf = report => report.chains.flatMap(each => each.links);

describe('the doctor names', { concurrency: 2 }, () => {
    for (const [link, breakIt, given = {}] of rows) {
        test(`${link}${given.says ? ` (${given.says.source})` : ''}`, async () => {
            const sandbox = await healthySandbox();
            let mendIt;
            try {
                mendIt = await breakIt(sandbox);
                const { status, output, errors, links } = await doctor(sandbox, given, '--json');
                const broken = links.filter(each => each.state === 'broken');
                deepStrictEqual(broken.map(each => each.link).sort(), [link, ...given.also ?? []].sort(), output);
                ok(broken.every(each => each.text && each.cure));
                if (given.says)
                    match(`${broken[0].text}; ${broken[0].cure}`, given.says);
                strictEqual(status, given.arrives ? 0 : 1, errors);
                if (given.isFixed)
                    match((await doctor(sandbox, given, '--fix')).output, /A download would arrive/);
                for (const secret of [sandbox.home, sandbox.temporary, String(user)])
                    ok(!output.includes(secret), `${secret} in ${output}`);
            } finally {
                await mendIt?.();
                sandbox.remove();
            }
        });
    }
});

test('an intact chain is reported as such, and --fix repairs what needs no decision', async () => {
    const sandbox = await healthySandbox();
    try {
        // A policy with an exception for the extension forbids nothing.
        policy('etc/chromium/policies/managed/a.json', {
            ExtensionInstallBlocklist: ['*'], ExtensionInstallForcelist: [`${chromiumsId};https://localhost/`],
            ExtensionSettings: { '*': { installation_mode: 'blocked' } },
        })(sandbox);
        const { status, output, links } = await doctor(sandbox, {}, '--json');
        strictEqual(status, 0, output);
        deepStrictEqual(links.filter(each => each.state === 'broken'), []);
        for (const link of new Set(rows.map(([each]) => each)))
            ok(links.some(each => each.link === link), `${link} is not told of`);

        put(firefoxesManifest(sandbox), '{');
        rmSync(chromiumsManifest(sandbox));
        strictEqual((await doctor(sandbox)).status, 1);
        const mended = await doctor(sandbox, {}, '--fix');
        strictEqual(mended.status, 0, mended.output);
        match(mended.output, /^ {2}ok +manifest-json .*\n[^]*A download would arrive\.\n$/m);
        ok(!mended.output.includes('\x1b'), 'no colours, for this is no terminal');
    } finally {
        sandbox.remove();
    }
});
