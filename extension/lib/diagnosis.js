// The chain from the browser to a file on the disk, link by link: which one is broken, and the cure.

import { text } from './ui.js';

/** The cure of each problem with the host, by the key of its text. */
const hostCures = {
    problemHostMissing: 'kovalo-host register',
    problemHostForbidden: 'kovalo-host register',
    problemHostNotStarted: 'kovalo-host doctor',
    problemHostStopped: 'kovalo-host doctor',
    problemHostSilent: 'kovalo-host doctor',
};
const applicationCures = {
    problemApplicationMissing: 'kovalo-host doctor',
    problemApplicationSilent: 'kovalo-host doctor',
    problemApplicationFailed: 'kovalo-host doctor',
};

/**
 * @typedef {object} Step
 * @property {string} name "browser", "access", "host", "application", "download"
 * @property {'ok'|'broken'|'unknown'} state
 * @property {string} words
 * @property {{kind: string}} [cure]
 */

/**
 * @param {object} facts what the background script knows: version of the host, the problem with it
 *     ({key, words} or null), the outcome of the last hand-over and of the test (the same, or undefined)
 * @param {boolean} hasAccess whether the user lets the extension see pages
 * @returns {Step[]} in the order of the chain
 */
export function check({ browser, version, hostProblem, lastProblem, test }, hasAccess) {
    const broken = (problem, cures) => ({
        state: 'broken', words: problem.words, cure: { kind: 'command', line: cures[problem.key] ?? 'kovalo-host doctor' },
    });
    const host = () => {
        if (version)
            return { state: 'ok', words: text('hostVersion', version) };
        return hostProblem ? broken(hostProblem, hostCures) : { state: 'unknown', words: text('statusConnecting') };
    };
    const result = test === undefined ? lastProblem : test;
    const isApplicationBroken = version && result && result.key in applicationCures;
    const application = () => {
        if (isApplicationBroken)
            return broken(result, applicationCures);
        return version && result === null ? { state: 'ok', words: text('applicationOk') }
            : { state: 'unknown', words: text('applicationUnknown') };
    };
    const download = () => {
        if (test === null)
            return { state: 'ok', words: text('testOk') };
        return test && !isApplicationBroken ? broken(test, {}) : { state: 'unknown', words: text('testUnknown') };
    };
    return [
        { name: 'browser', state: 'ok', words: browser },
        hasAccess ? { name: 'access', state: 'ok', words: text('accessOk') }
            : { name: 'access', state: 'broken', words: text('accessBroken'), cure: { kind: 'grant' } },
        { name: 'host', ...host() },
        { name: 'application', ...application() },
        { name: 'download', ...download() },
    ];
}

/** Whether a download was seen to arrive. */
export function isWorking(steps) { return steps.every(({ state }) => state === 'ok'); }
