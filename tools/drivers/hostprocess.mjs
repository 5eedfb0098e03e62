// The built host, started as by a browser: a child process with three pipes.

import { spawn } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { FrameReader, encodeFrame } from './framing.mjs';

/** A timeout in milliseconds. Long enough for a sanitized host on a busy machine; only a hang reaches it. */
const timeoutMs = 120_000;

const handshakeOptions = {
    crlf: 'response_add_crlf',
    sendTextLength: 'response_send_data_len_as_string',
    receivePercent: 'uri_encoding_for_rcv',
    sendPercent: 'uri_encoding_for_send',
    receiveBase64: 'base64_encoding_for_rcv',
    sendBase64: 'base64_encoding_for_send',
};

/** A handshake task; options are those of the keys above to switch on (directions are the host's). */
export function handshakeTask(id, ...options) {
    const record = { api_version: '3', browser: 'test' };
    for (const [option, name] of Object.entries(handshakeOptions))
        record[name] = options.includes(option) ? '1' : '0';
    return { id, type: 'handshake', handshake: record };
}

export class HostProcess {
    /** The options of frames to the host, see encodeFrame(). */
    writing = {};
    log = '';
    #reader = new FrameReader();
    #answers = [];
    #waiting = [];
    #lastId = 0;

    /**
     * @param {import('./sandbox.mjs').Sandbox} sandbox
     * @param {{args?: string[], env?: object, limit?: string}} options limit: as the shell's ulimit
     */
    constructor(sandbox, { args = [], env = {}, limit } = {}) {
        this.folder = sandbox.folder;
        this.writing.textLength = args.includes('--buggybrowser');
        const command = limit ? ['bash', '-c', `ulimit ${limit}; exec "$0" "$@"`] : [];
        const [program, ...rest] = [...command, sandbox.host, ...args];
        this.child = spawn(program, rest, {
            cwd: sandbox.folder,
            env: sandbox.environment(env),
            stdio: ['pipe', 'pipe', 'pipe'],
        });
        this.child.stdout.on('data', chunk => this.#onOutput(chunk));
        this.child.stderr.setEncoding('utf8').on('data', text => { this.log += text; });
        // EPIPE: the host may end before all is written; tests check its exit status.
        this.child.stdin.on('error', () => {});
        this.ended = new Promise((resolve, reject) => {
            this.child.on('error', reject);
            this.child.on('close', (code, signal) => resolve({ code, signal }));
        });
        this.ended.then(end => this.#giveUp(new Error(
            `the host ended (${end.signal ?? end.code}) before it answered\n${this.log}`)));
    }

    get pid() { return this.child.pid; }

    /** Writes raw bytes; resolves when the pipe has accepted them. */
    write(bytes) {
        return new Promise(resolve => { this.child.stdin.write(bytes, () => resolve()); });
    }

    /** Writes one frame: a task record, or a body that is text or bytes. */
    send(task) {
        const isBody = typeof task === 'string' || Buffer.isBuffer(task);
        return this.write(encodeFrame(isBody ? task : JSON.stringify(task), this.writing));
    }

    /** The next message as text. */
    receiveText() {
        if (this.#answers.length > 0)
            return Promise.resolve(this.#answers.shift());
        return withTimeout(new Promise((resolve, reject) => this.#waiting.push({ resolve, reject })),
                            () => `no message from the host\n${this.log}`);
    }

    /** The next message as a record. */
    async receive() { return JSON.parse(await this.receiveText()); }

    /** Sends a task, which gets an id if it has none, and takes the next message as its answer. */
    ask(task) {
        this.send({ ...task, id: task.id ?? String(++this.#lastId) });
        return this.receive();
    }

    /** Messages that were received and not yet consumed. */
    get unread() { return this.#answers.length; }

    /** The number of bytes received that make no complete message. */
    get unreadBytes() { return this.#reader.pending; }

    /** Switches options by a handshake; they apply from its answer on. Returns that answer. */
    async handshake(...options) {
        this.#reader.options = {
            crlf: options.includes('crlf'),
            textLength: options.includes('sendTextLength'),
            percent: options.includes('sendPercent'),
            base64: options.includes('sendBase64'),
        };
        const answer = await this.ask(handshakeTask(undefined, ...options));
        this.writing = {
            ...this.writing,
            percent: options.includes('receivePercent'),
            base64: options.includes('receiveBase64'),
        };
        return answer;
    }

    closeInput() { this.child.stdin.end(); }
    closeOutput() { this.child.stdout.destroy(); }
    kill() { this.child.kill('SIGKILL'); }

    /** How the process ended, as { code, signal }. */
    end() { return withTimeout(this.ended, () => `the host does not end\n${this.log}`); }

    /** A value in kB from /proc/PID/status, such as VmHWM (peak memory). */
    statusKilobytes(name) {
        const status = readFileSync(`/proc/${this.pid}/status`, 'utf8');
        return Number(status.match(new RegExp(`^${name}:\\s+(\\d+) kB`, 'm'))[1]);
    }

    /** The bytes that the process has read so far (rchar). */
    bytesRead() {
        return Number(readFileSync(`/proc/${this.pid}/io`, 'utf8').match(/^rchar: (\d+)/m)[1]);
    }

    #onOutput(chunk) {
        try {
            this.#reader.push(chunk);
            for (let text = this.#reader.next(); text !== undefined; text = this.#reader.next()) {
                const waiting = this.#waiting.shift();
                if (waiting)
                    waiting.resolve(text);
                else
                    this.#answers.push(text);
            }
        } catch (error) {
            this.#giveUp(error);
            this.kill();
        }
    }

    #giveUp(error) {
        for (const waiting of this.#waiting.splice(0))
            waiting.reject(error);
    }
}

function withTimeout(promise, describe) {
    let timer;
    const limit = new Promise((_, reject) => {
        timer = setTimeout(() => reject(new Error(describe())), timeoutMs);
    });
    return Promise.race([promise, limit]).finally(() => clearTimeout(timer));
}

/** Polls until the condition is true. "what", for the error, is a text or a function that returns one.
 *  limit: in milliseconds. */
export async function until(condition, what, limit = timeoutMs) {
    const end = Date.now() + limit;
    while (!await condition()) {
        if (Date.now() > end)
            throw new Error(`waited in vain: ${typeof what === 'function' ? what() : what}`);
        await new Promise(resolve => { setTimeout(resolve, 2); });
    }
}
