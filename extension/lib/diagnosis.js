// Checks the chain from the browser to a file on the disk, step by step, with a fix for each fault.

import { HostError } from './hosterror.js';
import { place } from './outcomes.js';
import { access, siteAccess } from './siteaccess.js';
import { inWords } from './status.js';
import { text } from './ui.js';

const doctor = 'kovalo-host doctor';
const register = 'kovalo-host register';

/** The command that fixes or diagnoses each problem with the host, by the key of its text. */
const hostCures = {
    problemHostMissing: register,
    problemHostForbidden: register,
    problemHostOther: register,
    problemHostBlocked: doctor,
    problemHostNotStarted: doctor,
    problemHostStopped: doctor,
    problemHostSilent: doctor,
};
/** The same for the application. The first says why it does not start. */
const applicationCures = {
    problemApplicationUnreached: 'KOVALO_LOG_LEVEL=9 kov -service',
    problemApplicationSilent: 'kov quit',
    problemApplicationMissing: doctor,
    problemApplicationFailed: doctor,
};

/**
 * @typedef {object} Step
 * @property {string} name "browser", "access", "host", "application", "catching", "download"
 * @property {'ok'|'broken'|'unknown'} state
 * @property {string} words
 * @property {{kind: 'command', line: string, hint?: string}|{kind: 'grant'}|{kind: 'options'}} [cure]
 */

/**
 * @typedef {object} Facts from the background script. A problem is {key, words}
 * @property {string} browser its name
 * @property {string} access one of the values in siteaccess.js
 * @property {string} version the host's, '' while not connected
 * @property {object|null} hostProblem
 * @property {boolean|undefined} isCatching by the options; undefined while they are not known
 * @property {object|null|undefined} lastProblem of the last hand-over: null for none, undefined
 *     when there was none
 * @property {object|null|undefined} test the same for a test download
 */

const named = error => (error ? { key: error.message, words: inWords(error) } : error);

/**
 * For the background script, which does not know the browser's name.
 * @param {Error|null|undefined} test the result of a test download: null on success
 * @returns {Promise<Facts>}
 */
export async function gatherFacts({ host, status, settings, outcomes }, test) {
    const latest = (await outcomes.list()).at(-1);
    const lastError = latest?.reason ? new HostError(latest.reason, latest.detail) : null;
    const wasAsked = lastError || latest?.state === place.application;
    return {
        access: await siteAccess(),
        version: host.version,
        hostProblem: named(status.hostError),
        isCatching: settings.current?.browser.monitor.enable,
        lastProblem: wasAsked ? named(lastError) : undefined,
        test: named(test),
    };
}

const step = (name, state, words, cure) => ({ name, state, words, cure });
/** The page itself says what the doctor is. */
const broken = (name, { words }, line) => step(name, 'broken', words, {
    kind: 'command', line, hint: line === doctor ? undefined : text('cureHint'),
});

function accessStep(state) {
    const cure = { kind: 'grant' };
    switch (state) {
    case access.all: return step('access', 'ok', text('accessOk'));
    case access.some: return step('access', 'ok', text('accessSome'), cure);
    default: return step('access', 'broken', text('accessBroken'), cure);
    }
}

function hostStep({ version, hostProblem }) {
    if (version)
        return step('host', 'ok', text('hostVersion', version));
    if (!hostProblem)
        return step('host', 'unknown', text('statusConnecting'));
    return broken('host', hostProblem, hostCures[hostProblem.key] ?? doctor);
}

function applicationStep(result) {
    if (result && Object.hasOwn(applicationCures, result.key))
        return broken('application', result, applicationCures[result.key]);
    return result === null ? step('application', 'ok', text('applicationOk'))
        : step('application', 'unknown', text('applicationUnknown'));
}

function downloadStep(test) {
    if (test)
        return broken('download', test, doctor);
    return test === null ? step('download', 'ok', text('testOk')) : step('download', 'unknown', text('testUnknown'));
}

/**
 * @param {Facts} facts
 * @returns {Step[]} in the order of the chain
 */
export function check(facts) {
    const { browser, isCatching, lastProblem, test } = facts;
    const host = hostStep(facts);
    const isConnected = host.state === 'ok';
    const application = applicationStep(isConnected ? test === undefined ? lastProblem : test : undefined);
    const isReached = isConnected && application.state !== 'broken';
    return [
        step('browser', 'ok', browser),
        accessStep(facts.access),
        host,
        application,
        ...isCatching === false ? [step('catching', 'broken', text('stateOff'), { kind: 'options' })] : [],
        downloadStep(isReached ? test : undefined),
    ];
}

/** Whether a download has arrived. */
export function isWorking(steps) { return steps.every(({ state }) => state === 'ok'); }
