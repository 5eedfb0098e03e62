// An isolated environment for tests: home folder, temporary folder (with the application's local socket),
// and a copy of the program. The user's files are neither read nor written.

import {
    copyFileSync, existsSync, linkSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, readlinkSync,
    rmSync, symlinkSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, dirname, join } from 'node:path';

const passedOn = ['PATH', 'ASAN_OPTIONS', 'LSAN_OPTIONS', 'UBSAN_OPTIONS', 'TSAN_OPTIONS'];

/** The built host, named by the environment variable KOVALO_HOST. */
export function builtHost() {
    const path = process.env.KOVALO_HOST;
    if (!path || !existsSync(path))
        throw new Error(`KOVALO_HOST names no built host: ${path}`);
    return path;
}

/** The version of the programs. The build takes it from the same place. */
export const [, version] = readFileSync(new URL('../../CMakeLists.txt', import.meta.url), 'utf8')
    .match(/^project\(.* VERSION ([\d.]+)/m);

/** Sandboxes not removed yet. Their programs are killed even when the test is aborted. */
const sandboxes = new Set();
process.on('exit', () => sandboxes.forEach(each => each.remove()));
for (const signal of ['SIGINT', 'SIGTERM'])
    process.once(signal, () => process.exit(1));

function endIfThere(pid) {
    try {
        process.kill(pid, 'SIGKILL');
    } catch (error) {
        if (error.code !== 'ESRCH')
            throw error;
    }
}

export class Sandbox {
    /** @param {string[]} beside the names of further programs to copy from the host's folder */
    constructor(beside = []) {
        const host = builtHost();
        this.folder = mkdtempSync(join(tmpdir(), 'kov-'));
        this.home = this.#makeFolder('home');
        this.temporary = this.#makeFolder('tmp');
        this.programs = this.#makeFolder('bin');
        for (const name of [basename(host), ...beside])
            place(join(dirname(host), name), join(this.programs, name));
        const translations = join(dirname(host), 'translations');
        if (existsSync(translations))
            symlinkSync(translations, join(this.programs, 'translations'));
        this.host = join(this.programs, basename(host));
        sandboxes.add(this);
    }

    /** The environment variables for a process in the sandbox. */
    environment(extra = {}) {
        const environment = {
            HOME: this.home,
            LANG: 'C.UTF-8',
            TMPDIR: this.temporary,
            XDG_CACHE_HOME: join(this.home, '.cache'),
            XDG_CONFIG_HOME: join(this.home, '.config'),
            XDG_DATA_HOME: join(this.home, '.local/share'),
            XDG_RUNTIME_DIR: this.temporary,
        };
        for (const name of passedOn) {
            if (process.env[name] !== undefined)
                environment[name] = process.env[name];
        }
        return { ...environment, ...extra };
    }

    /** The application's download folder. */
    get downloads() { return join(this.home, 'Downloads'); }

    /** The ids of running processes whose program is in the sandbox. */
    running(program) {
        return readdirSync('/proc').filter(name => /^\d+$/.test(name)).filter(pid => {
            try {
                const path = readlinkSync(`/proc/${pid}/exe`);
                return program ? path === join(this.programs, program) : dirname(path) === this.programs;
            } catch {
                return false; // it has just ended
            }
        }).map(Number);
    }

    /** Kills the remaining processes, and removes the folders. */
    remove() {
        sandboxes.delete(this);
        // Hosts first: one that is running when its application is killed starts another one.
        for (let pids = this.running(); pids.length > 0; pids = this.running()) {
            for (const pid of pids)
                endIfThere(pid);
            Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, 10);
        }
        rmSync(this.folder, { recursive: true, force: true, maxRetries: 5 });
    }

    #makeFolder(name) {
        const folder = join(this.folder, name);
        mkdirSync(folder, { mode: 0o700 });
        return folder;
    }
}

/** A link where the file system allows it: a host under the sanitizers is large. */
function place(from, to) {
    try {
        linkSync(from, to);
    } catch {
        copyFileSync(from, to);
    }
}
