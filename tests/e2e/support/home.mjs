// A user's home in which the download service has its downloads.

import { execFileSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { existsSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { until } from '../../../tools/drivers/hostprocess.mjs';
import { HostFixture } from './hostfixture.mjs';

/** A user's home with the service in it, which shows its downloads and their files. */
class Home extends HostFixture {
    get folder() { return this.sandbox.downloads; }
    files() { return existsSync(this.folder) ? readdirSync(this.folder).sort() : []; }
    file(name) { return readFileSync(join(this.folder, name)); }
    hash(name) { return createHash('sha256').update(this.file(name)).digest('hex'); }
    async jobs() { return JSON.parse(await this.kov('jobs', '--json')); }
    async add(...urls) { return (await this.kov('add', ...urls)).split('\n').map(parseFloat).slice(0, -1); }

    /** Waits for a download to come to an end, or into a state. */
    async job(id, ...states) {
        let job;
        await until(async () => {
            job = (await this.jobs()).find(each => each.id === id);
            return (states.length > 0 ? states : ['finished', 'failed']).includes(job.state);
        }, () => `download ${id} to be ${states.join(' or ') || 'ended'}; it is ${JSON.stringify(job)}`);
        return job;
    }

    /** A fake desktop that records what it should open. */
    desktop() {
        const told = join(this.sandbox.folder, 'told');
        writeFileSync(join(this.sandbox.folder, 'xdg-open'), `#!/bin/sh\nprintf %s "$1" >'${told}.new'; mv '${told}.new' '${told}'\n`,
                      { mode: 0o755 });
        const env = this.sandbox.environment({ PATH: `${this.sandbox.folder}:${process.env.PATH}` });
        return {
            opens: async (...words) => {
                execFileSync(this.program('kov'), words, { env });
                await until(() => existsSync(told), 'the desktop to be told');
                const path = readFileSync(told, 'utf8');
                rmSync(told);
                return path;
            },
        };
    }

    async kill() {
        for (const pid of this.sandbox.running('kov'))
            process.kill(pid, 'SIGKILL');
        await until(() => this.sandbox.running('kov').length === 0, 'the service to be gone');
    }
}

export function inHome(what, play, options = {}) {
    test(what, options, async () => {
        const home = new Home();
        try {
            await play(home);
        } finally {
            await home.remove();
        }
    });
}
