// A sample conversation: the extension's tasks and the host's exact answers. Shown by the demonstration,
// and checked by the tests in each browser.

import { deepStrictEqual } from 'node:assert';
import { handshakeTask } from './hostprocess.mjs';
import { version } from './sandbox.mjs';

const plain = (id, type, error) => ({ error, id, result: '', type });

/** The tasks with their answers. Only "shutdown", which comes last, is not answered. */
export const conversation = [
    {
        about: 'The extension introduces itself; the host tells its version.',
        task: handshakeTask('1'),
        answer: { bt: true, error: '', id: '1', result: '', type: 'handshake', version, yt: false },
    },
    {
        about: 'The captions for its context menu.',
        task: { id: '2', type: 'ui_strings' },
        answer: {
            error: '',
            id: '2',
            result: '',
            strings: {
                dlall: 'Download all with KOV',
                dlbykov: '',
                dllink: 'Download with KOV',
                dlselected: 'Download selected with KOV',
                dlvideo: 'Download video with KOV',
            },
            type: 'ui_strings',
        },
    },
    {
        about: 'Is the key held that keeps downloads in the browser?',
        task: { id: '3', type: 'key_state' },
        answer: { error: '', id: '3', keyCode: 45, pressed: false, result: '', type: 'key_state' },
    },
    {
        about: "The browser's proxy, which the host declines to take over.",
        task: {
            id: '4',
            type: 'browser_proxy',
            browser_proxy: { type: '1', protocol: 'http', addr: 'proxy.example', port: '3128' },
        },
        answer: plain('4', 'browser_proxy', 'failure'),
    },
    {
        about: 'A task that nobody serves.',
        task: { id: '5', type: 'window', window: { windowHandle: '0', action: 'show', needWait: '0' } },
        answer: plain('5', 'window', 'unknown_task_type'),
    },
    {
        about: 'A task that nobody knows.',
        task: { id: '6', type: 'make_coffee' },
        answer: plain('6', 'make_coffee', 'unknown_task_type'),
    },
];

export const farewell = { id: '7', type: 'shutdown' };

/**
 * Runs the conversation, except for "shutdown". ask(task) resolves with the answer; onTurn(turn,
 * answer) is called before each comparison.
 */
export async function converse(ask, onTurn = () => {}) {
    for (const turn of conversation) {
        const answer = await ask(turn.task);
        onTurn(turn, answer);
        deepStrictEqual(answer, turn.answer);
    }
}
