// The fixture of end-to-end tests: an application that can be killed, an extension that counts answers,
// and a web site that counts requests.

import { deepStrictEqual } from 'node:assert';
import { execFile, spawn } from 'node:child_process';
import { createHash } from 'node:crypto';
import { existsSync, renameSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { join } from 'node:path';
import { Settings } from '../../../extension/lib/settings.js';
import { HostProcess, until } from '../../../tools/drivers/hostprocess.mjs';
import { endsInOrder } from './hosttest.mjs';
import { Sandbox } from '../../../tools/drivers/sandbox.mjs';

// Stores nothing: the extension's own options are not changed here.
globalThis.chrome = { storage: { local: { get: () => Promise.resolve({}) } } };

/** The extension's end of a host: matches answers with tasks, and detects surplus answers. */
export class Extension {
    settings = new Settings(this);
    /** The host's notifications, except those of settings. */
    told = [];
    #waiting = new Map();
    #surplus = [];
    #lastId = 0;

    constructor(host) {
        this.host = host;
        this.#listen();
    }

    /** Resolves with the answer, or with null when the host ends without one. */
    ask(type, members = {}, id = String(++this.#lastId)) {
        const answer = new Promise(resolve => { this.#waiting.set(id, resolve); });
        this.host.send({ id, type, ...members });
        return answer;
    }

    download(...items) { return this.create({}, ...items); }

    /** The same with members of the record beside the downloads. */
    create(members, ...items) {
        const item = items.map(each => typeof each === 'string' ? { url: each } : each);
        return this.ask('create_downloads', { create_downloads: { downloads: { item }, ...members } });
    }

    /** The answer to a task that the application must answer, so it is connected then; downloads nothing. */
    reach() { return this.download('ftp://127.0.0.1/'); }

    /** Queries the settings, and subscribes to their changes. */
    async querySettings() { this.settings.accept(await this.ask('query_settings')); }

    hasSettings(values) {
        return Object.entries(values).every(([name, value]) => this.settings.current.browser.monitor[name] === value);
    }

    /** Ends the input. The host must exit cleanly, without having answered anything twice. */
    async end() {
        this.host.closeInput();
        await endsInOrder(this.host);
        deepStrictEqual(this.#surplus, []);
    }

    async #listen() {
        try {
            for (;;)
                this.#take(await this.host.receive());
        } catch { // it has ended
            for (const resolve of this.#waiting.values())
                resolve(null);
        }
    }

    #hear(message) {
        if (message.type === 'query_settings')
            this.settings.accept(message);
        else
            this.told.push(message);
    }

    #take(message) {
        const resolve = this.#waiting.get(message.id);
        this.#waiting.delete(message.id);
        if (resolve)
            resolve(message);
        else if (message.id === '')
            this.#hear(message);
        else
            this.#surplus.push(message);
    }
}

/** A user's home with the application in it. */
export class HostFixture {
    /** The log of the application that serve() started. */
    log = '';
    #extensions = [];

    constructor(beside = ['kov']) { this.sandbox = new Sandbox(beside); }

    extension(env) {
        const extension = new Extension(new HostProcess(this.sandbox, { env }));
        this.#extensions.push(extension);
        extension.host.ended.then(() => this.#extensions.splice(this.#extensions.indexOf(extension), 1));
        return extension;
    }

    program(name) { return join(this.sandbox.programs, name); }

    /** Replaces the application by a shell script; it is then "kov-real". */
    replaceApplication(text, mode = 0o755) {
        if (existsSync(this.program('kov')))
            renameSync(this.program('kov'), this.program('kov-real'));
        writeFileSync(this.program('kov'), `#!/bin/sh\n${text}\n`, { mode });
    }

    restoreApplication() { renameSync(this.program('kov-real'), this.program('kov')); }

    /** The output of a command line of the application. */
    kov(...words) {
        return new Promise((resolve, reject) => {
            execFile(this.program('kov'), words, { env: this.sandbox.environment() },
                     (error, output) => error ? reject(error) : resolve(output));
        });
    }

    /** Makes sure that the application runs; resolves with its process id. */
    async serve() {
        const [running] = this.sandbox.running('kov');
        if (running)
            return running;
        const child = spawn(this.program('kov'), ['-service'], {
            env: this.sandbox.environment({ KOVALO_LOG_LEVEL: '1' }),
            stdio: ['ignore', 'ignore', 'pipe'],
        });
        let serving = false;
        child.stderr.setEncoding('utf8').on('data', text => {
            this.log += text;
            serving ||= this.log.endsWith('\n') && this.log.includes(`[${child.pid}] 1 [KovService]: serving`);
        });
        await until(() => serving, 'the application to serve');
        return child.pid;
    }

    async remove() {
        const hosts = this.#extensions.map(extension => extension.host);
        for (const host of hosts)
            host.kill();
        await Promise.all(hosts.map(host => host.ended));
        this.sandbox.remove();
    }
}

/** A web site with a small file at every path except below "none/". */
export class CountingServer {
    /** The number of requests, by path. */
    requests = new Map();
    /** The SHA-256 of the posted body, by path. */
    posted = new Map();
    #server = createServer((request, response) => this.#serve(request, response));

    static async start() {
        const self = new CountingServer();
        await new Promise(resolve => { self.#server.listen(0, '127.0.0.1', resolve); });
        return self;
    }

    url(path) { return `http://127.0.0.1:${this.#server.address().port}/${path}`; }
    count(path) { return this.requests.get(`/${path}`) ?? 0; }

    stop() {
        this.#server.closeAllConnections();
        return new Promise(resolve => { this.#server.close(resolve); });
    }

    async #serve(request, response) {
        this.requests.set(request.url, (this.requests.get(request.url) ?? 0) + 1);
        const hash = createHash('sha256');
        try {
            for await (const chunk of request)
                hash.update(chunk);
        } catch {
            return; // the application was killed
        }
        this.posted.set(request.url, hash.digest('hex'));
        if (request.url.startsWith('/none/')) {
            response.writeHead(404).end();
            return;
        }
        response.writeHead(200, { 'Content-Length': 4 }).write('fi');
        setTimeout(() => response.end('le'), 1);
    }
}
