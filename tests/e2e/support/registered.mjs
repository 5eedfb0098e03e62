// kovalo-host in a home of its own, with browsers in it. Root has all permissions, so if the tests run
// as root, the program runs as another user.

import { spawn } from 'node:child_process';
import { chownSync, lchownSync, mkdirSync, readFileSync, readdirSync, readlinkSync } from 'node:fs';
import { join } from 'node:path';
import { Sandbox } from '../../../tools/drivers/sandbox.mjs';

export const table = JSON.parse(readFileSync(
    new URL('../../../src/registration/browsers.json', import.meta.url)));
export const manifestName = `${table.host.name}.json`;
export const isRoot = process.getuid() === 0;
const nobody = 65534;
export const user = isRoot ? nobody : process.getuid();

function giveAway(path) {
    chownSync(path, nobody, nobody);
    for (const each of readdirSync(path, { withFileTypes: true })) {
        if (each.isDirectory())
            giveAway(join(path, each.name));
        else if (!path.endsWith('/bin')) // those are the build's own files
            lchownSync(join(path, each.name), nobody, nobody);
    }
}

export class RegisteredSandbox extends Sandbox {
    /** @param {string[]} profiles folders that browsers have made, such as ".mozilla" */
    constructor(profiles = []) {
        super(['kov', 'kovalo-host']);
        for (const each of profiles)
            mkdirSync(join(this.home, each), { recursive: true });
    }

    /** The root of the system-wide folders and of the policies. */
    get system() { return join(this.folder, 'system'); }

    inHome(...path) { return join(this.home, ...path); }

    /** Anywhere below this folder: the doctor also starts the application beside another host. */
    running(program) {
        return program ? super.running(program) : readdirSync('/proc').filter(pid => {
            try {
                return readlinkSync(`/proc/${pid}/exe`).startsWith(`${this.folder}/`);
            } catch {
                return false; // no process, or one that has just ended
            }
        }).map(Number);
    }

    /** Runs kovalo-host; resolves with its status and output. */
    run(args, env = {}) {
        if (isRoot)
            giveAway(this.folder);
        const child = spawn(join(this.programs, 'kovalo-host'), args, {
            cwd: this.folder,
            env: this.environment(env),
            stdio: ['ignore', 'pipe', 'pipe'],
            ...isRoot && { uid: nobody, gid: nobody },
        });
        let output = '';
        let errors = '';
        child.stdout.setEncoding('utf8').on('data', text => { output += text; });
        child.stderr.setEncoding('utf8').on('data', text => { errors += text; });
        return new Promise((resolve, reject) => {
            child.on('error', reject);
            child.on('close', status => resolve({ status, output, errors }));
        });
    }
}
