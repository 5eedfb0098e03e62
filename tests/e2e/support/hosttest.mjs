// For most tests of the host: a sandbox, and hosts in it that do not outlive their test.

import { after, before } from 'node:test';
import { strictEqual } from 'node:assert';
import { HostProcess } from '../../../tools/drivers/hostprocess.mjs';
import { Sandbox } from '../../../tools/drivers/sandbox.mjs';

/** Under the sanitizers everything takes several times as long. */
export const sanitized = process.env.KOVALO_SANITIZED === '1';

/**
 * Declares a sandbox for the tests of the file that calls it.
 * @returns {(options?: object) => HostProcess} starts a host there
 */
export function hostStarter() {
    let sandbox;
    const started = [];
    before(() => { sandbox = new Sandbox(); });
    after(async () => {
        for (const host of started)
            host.kill();
        await Promise.all(started.map(host => host.ended));
        sandbox?.remove();
    });
    return options => {
        const host = new HostProcess(sandbox, options);
        started.push(host);
        host.ended.then(() => started.splice(started.indexOf(host), 1));
        return host;
    };
}

/** Waits for the end of a host, and checks that it was a clean exit. */
export async function endsInOrder(host) {
    const { code, signal } = await host.end();
    strictEqual(signal ?? code, 0, host.log);
}
