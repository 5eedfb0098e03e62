// The connection to the native host: one port, tasks out, answers in.

import { HostError } from './hosterror.js';

export const hostName = 'com.tessmark.kovalo';

const protocolVersion = '3';
const firstRetryDelay = 1000;
const maxRetryDelayMs = 60_000;

/** The reasons why a port closed, by the browsers' error messages, as there are no error codes. */
const reasons = [
    ['problemHostMissing', /not found|No such native application/i],
    ['problemHostBlocked', /system administrator/i],
    ['problemHostForbidden', /forbidden|not allowed|permission/i],
    ['problemHostOther', /when communicating|tried to send/i],
];
/** Messages without a reason. */
const saysNothing = /^$|has exited|failed to start|unexpected error/i;

/** In milliseconds. A working host answers the handshake within a few of them. */
const handshakeTimeoutMs = 5000;

/**
 * In milliseconds. By then the host has given up (maxWaitMs in vhipcincomingdownloadsclient.h): a download
 * that it still sent to the application would be there twice.
 */
export const applicationTimeoutMs = 60_000;

/**
 * Opens the port on demand, reopens it after a failure, and matches answers to tasks.
 * Notifications (messages with an empty id) go to onNotification.
 */
export class NativeHost {
    onNotification = _message => {};
    onConnected = () => {};
    onDisconnected = _error => {};

    #port = null;
    #ready = null;
    #pending = new Map();
    #lastId = 0;
    #version = '';
    #retryDelay = firstRetryDelay;
    #retryTimer = 0;

    /** The host's version, empty while not connected. */
    get version() { return this.#version; }

    /** Resolves once the host has answered the handshake. */
    open() {
        this.#ready ??= this.#connect();
        return this.#ready;
    }

    /** The same, but starts a new attempt instead of waiting for a pending one. */
    openAnew() {
        const port = this.#port;
        if (port && !this.#version) {
            this.#forgetPort(new HostError('problemHostSilent'));
            port.disconnect();
        }
        return this.open();
    }

    /** Sends a task and resolves with its answer. members: the record of the task's type. */
    async ask(type, members = {}) {
        await this.open();
        return this.#send(type, members);
    }

    /**
     * The same for a task that needs the application. Rejects after a timeout; a later answer is given
     * to onLate.
     */
    askApplication(type, members, { onLate = () => {}, timeoutMs = applicationTimeoutMs } = {}) {
        return new Promise((resolve, reject) => {
            let isLate = false;
            const timer = setTimeout(() => {
                isLate = true;
                reject(new HostError('problemApplicationSilent'));
            }, timeoutMs);
            this.open()
                .then(() => (isLate ? null : this.#send(type, members))) // timed out
                .then(answer => (isLate ? answer && onLate(answer) : resolve(answer)), reject)
                .finally(() => clearTimeout(timer));
        });
    }

    /** Sends a task and ignores its answer. Dropped while not connected. */
    tell(type, members) {
        if (this.#version)
            this.#port.postMessage({ id: String(++this.#lastId), type, ...members });
    }

    async #connect() {
        clearTimeout(this.#retryTimer);
        const port = chrome.runtime.connectNative(hostName);
        this.#port = port;
        port.onMessage.addListener(message => this.#onMessage(message));
        port.onDisconnect.addListener(() => {
            const reason = port.error?.message ?? chrome.runtime.lastError?.message ?? '';
            if (this.#port === port)
                this.#onDisconnect(this.#errorForReason(reason));
        });
        const timer = setTimeout(() => {
            if (this.#port === port)
                this.#onDisconnect(new HostError('problemHostSilent'));
            port.disconnect();
        }, handshakeTimeoutMs);
        const answer = await this.#send('handshake', {
            handshake: { api_version: protocolVersion, browser: navigator.userAgent },
        }).finally(() => clearTimeout(timer));
        this.#version = answer.version;
        this.#retryDelay = firstRetryDelay;
        this.onConnected();
    }

    #send(type, members) {
        const port = this.#port;
        if (!port)
            return Promise.reject(new HostError('problemHostStopped'));
        const id = String(++this.#lastId);
        return new Promise((resolve, reject) => {
            this.#pending.set(id, { resolve, reject });
            port.postMessage({ id, type, ...members });
        });
    }

    #onMessage(message) {
        const pending = this.#pending.get(message.id);
        if (pending) {
            this.#pending.delete(message.id);
            pending.resolve(message);
        } else if (message.id === '') {
            this.onNotification(message);
        }
    }

    #forgetPort(error) {
        this.#port = null;
        this.#ready = null;
        this.#version = '';
        const pending = [...this.#pending.values()];
        this.#pending.clear();
        for (const each of pending)
            each.reject(error);
    }

    #onDisconnect(error) {
        this.#forgetPort(error);
        this.onDisconnected(error);
        this.#retryTimer = setTimeout(() => this.open().catch(() => {}), this.#retryDelay);
        this.#retryDelay = Math.min(2 * this.#retryDelay, maxRetryDelayMs);
    }

    #errorForReason(reason) {
        const detail = saysNothing.test(reason) ? '' : reason;
        if (this.#version)
            return new HostError('problemHostStopped', detail);
        const [known] = reasons.find(([, words]) => words.test(reason)) ?? [];
        return known ? new HostError(known) : new HostError('problemHostNotStarted', detail);
    }
}
