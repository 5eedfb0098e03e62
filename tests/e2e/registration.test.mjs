// Registration of the host with browsers, with the real table of browsers.

import { deepStrictEqual, match, ok, strictEqual } from 'node:assert';
import {
    chmodSync, existsSync, mkdirSync, readFileSync, readdirSync, renameSync, rmSync, symlinkSync, writeFileSync,
} from 'node:fs';
import { dirname, join } from 'node:path';
import { after, test } from 'node:test';
import { HostProcess } from '../../tools/drivers/hostprocess.mjs';
import { endsInOrder } from './support/hosttest.mjs';
import { RegisteredSandbox, manifestName, table } from './support/registered.mjs';

const sandboxes = [];
function sandboxWith(...profiles) {
    sandboxes.push(new RegisteredSandbox(profiles));
    return sandboxes.at(-1);
}
after(() => sandboxes.forEach(each => each.remove()));

const familyOf = browser => table.families[browser.family];
/** A profile folder, relative to the browser's home folder. */
const inside = (profile, config) => profile.replace(/^~C\//, config).replace(/^~\//, '');
const manifest = (browser, path) => ({
    name: 'com.tessmark.kovalo',
    description: 'Kovalo native messaging host',
    path,
    type: 'stdio',
    [familyOf(browser).idsKey]: familyOf(browser).ids,
});
const readJson = path => JSON.parse(readFileSync(path));
const allFiles = folder => readdirSync(folder, { withFileTypes: true }).flatMap(
    each => (each.isDirectory() ? allFiles(join(folder, each.name)) : join(folder, each.name)));

async function succeeds(sandbox, ...args) {
    const { status, output, errors } = await sandbox.run(args);
    strictEqual(status, 0, errors);
    return output;
}

test('register writes one manifest per installed browser, and unregister removes them', async () => {
    const places = table.browsers.map(browser => ({
        browser, profiles: browser.profiles.map(each => inside(each, '.config/')),
    }));
    const sandbox = sandboxWith(...places.flatMap(each => each.profiles));
    const expected = places.flatMap(({ browser, profiles }) => profiles.map(
        each => [sandbox.inHome(each, familyOf(browser).manifestFolder, manifestName), browser]));
    const written = await succeeds(sandbox, 'register');
    deepStrictEqual(allFiles(sandbox.home).sort(), expected.map(([path]) => path).sort());
    for (const [path, browser] of expected) {
        deepStrictEqual(readJson(path), manifest(browser, sandbox.host));
        ok(written.includes(`wrote ${path}\n`));
    }
    strictEqual((await succeeds(sandbox, 'register')).match(/unchanged/g).length, expected.length);
    match(await succeeds(sandbox, 'browsers'), /^Brave +brave +native +yes +yes$/m);
    await succeeds(sandbox, 'unregister');
    deepStrictEqual(allFiles(sandbox.home), []);

    const other = sandboxWith('.config/vivaldi');
    await succeeds(other, 'register');
    deepStrictEqual(readdirSync(other.inHome('.config')), ['vivaldi']);
    strictEqual((await other.run(['register', 'firefox'])).status, 1);
    ok(!existsSync(other.inHome('.mozilla')));
    await succeeds(other, 'register', 'Vivaldi', '--host', '/bin/true');
    strictEqual(readJson(allFiles(other.home)[0]).path, '/bin/true');
});

test('files of other programs are left alone', async () => {
    const sandbox = sandboxWith('.mozilla/native-messaging-hosts', '.config/chromium/NativeMessagingHosts');
    const [firefox, chromium] = ['.mozilla/native-messaging-hosts', '.config/chromium/NativeMessagingHosts']
        .map(each => sandbox.inHome(each, manifestName));
    const others = { ...manifest(table.browsers[0], '/bin/true'), allowed_origins: ['chrome-extension://other/'] };
    writeFileSync(firefox, '{');
    writeFileSync(chromium, JSON.stringify(others));
    match(await succeeds(sandbox, 'unregister'), /left alone/);
    strictEqual(readFileSync(firefox, 'utf8'), '{');
    deepStrictEqual(readJson(chromium), others);

    const elsewhere = sandbox.inHome('elsewhere.json');
    renameSync(firefox, elsewhere);
    symlinkSync(elsewhere, firefox);
    match(await succeeds(sandbox, 'register', 'firefox'), /wrote/);
    strictEqual(readFileSync(elsewhere, 'utf8'), '{');
    chmodSync(firefox, 0);
    strictEqual((await sandbox.run(['unregister', 'firefox'])).status, 1);
    rmSync(firefox);
    mkdirSync(firefox);
    const { status, errors } = await sandbox.run(['register', 'firefox']);
    strictEqual(status, 1);
    match(errors, /a folder is in its place.*: mv -T .*\.json .*\.json\.old\n/);
});

test('a browser in a Flatpak starts the host by a script, through flatpak-spawn', async () => {
    const [chromium] = table.browsers;
    for (const browser of table.browsers.filter(each => each.flatpaks)) {
        const [id] = browser.flatpaks;
        const profile = join('.var/app', id, inside(browser.profiles[0], 'config/'));
        const sandbox = sandboxWith(profile);
        const output = await succeeds(sandbox, 'register', '--flatpak', id);
        ok(output.includes(`flatpak override --user --talk-name=org.freedesktop.Flatpak ${id}\n`));
        ok(output.includes('any program'));
        const folder = sandbox.inHome(profile, familyOf(browser).manifestFolder);
        const { path } = readJson(join(folder, manifestName));
        strictEqual(dirname(path), folder);
        if (browser === chromium)
            await answersThrough(sandbox, path);
        match(await succeeds(sandbox, 'browsers'), new RegExp(` ${id} +Flatpak +yes +yes$`, 'm'));
        await succeeds(sandbox, 'unregister', id);
        deepStrictEqual(allFiles(sandbox.home), []);
    }
});

/** Runs the script as in a sandbox, with a fake flatpak-spawn in the PATH. */
async function answersThrough(sandbox, script) {
    const stand = join(sandbox.folder, 'stand-in');
    mkdirSync(stand);
    writeFileSync(join(stand, 'flatpak-spawn'), '#!/bin/sh\n[ "$1" = --host ] && shift && exec "$@"\n');
    chmodSync(join(stand, 'flatpak-spawn'), 0o755);
    const host = new HostProcess({
        host: script,
        folder: sandbox.folder,
        environment: () => ({ ...sandbox.environment(), PATH: `${stand}:${process.env.PATH}` }),
    }, { args: table.families.chromium.ids });
    strictEqual((await host.handshake()).type, 'handshake');
    host.closeInput();
    await endsInOrder(host);
}

test('a Firefox Snap uses the ordinary manifest; a Chromium Snap is not supported', async () => {
    const sandbox = sandboxWith('snap/firefox/common/.mozilla', 'snap/chromium/common/chromium');
    match(await succeeds(sandbox, 'register'), /ordinary manifest/);
    deepStrictEqual(allFiles(sandbox.home),
                    [sandbox.inHome('.mozilla/native-messaging-hosts', manifestName)]);
    const { status, errors } = await sandbox.run(['register', 'snap:chromium']);
    strictEqual(status, 1);
    match(errors, /cannot work/);
});

test('--everybody writes to one system-wide folder per browser', async () => {
    const sandbox = sandboxWith();
    await succeeds(sandbox, 'register', '--everybody', '--root', sandbox.system, '--host', '/usr/lib/kovalo/wenativehost');
    const folders = new Set(table.browsers.flatMap(each => each.everybody?.slice(0, 1) ?? []));
    deepStrictEqual(allFiles(sandbox.system).sort(),
                    [...folders].map(each => join(sandbox.system, each, manifestName)).sort());
    mkdirSync(sandbox.inHome('.config/chromium'), { recursive: true });
    match(await succeeds(sandbox, 'browsers', '--root', sandbox.system),
          /^Chromium .* broken: there is no host at \/usr\/lib\/kovalo\/wenativehost$|^Chromium .* for everybody$/m);
    await succeeds(sandbox, 'unregister', '--everybody', '--root', sandbox.system);
    deepStrictEqual(allFiles(sandbox.system), []);
});

test('help for each command, and clear errors for wrong usage', async () => {
    const sandbox = sandboxWith('.mozilla');
    for (const command of ['register', 'unregister', 'browsers', 'doctor'])
        match(await succeeds(sandbox, command, '--help'), /Usage:.*[^]*Exit status/);
    match(await succeeds(sandbox, '--help'), /doctor +say why/);
    for (const args of [[], ['mend'], ['register', 'lynx'], ['browsers', 'all'], ['doctor', '--no'],
                        ['register', '--flatpak', 'org.lynx'], ['unregister', '--everybody', 'firefox'],
                        ['register', '--everybody', '--all'], ['register', '--everybody', '--flatpak', 'com.brave.Browser'],
                        ['unregister', '--everybody', '--all'], ['register', '--all', '--flatpak', 'com.brave.Browser'], ['doctor', '--timeout', 'x']]) {
        const { status, output, errors } = await sandbox.run(args);
        deepStrictEqual([status, output], [2, ''], args.join(' '));
        match(errors, /--help/);
    }
    strictEqual((await sandbox.run(['register', '--host', '/bin/none'])).status, 1);
});
