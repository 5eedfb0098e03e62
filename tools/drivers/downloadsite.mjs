// A web server for two sites. It serves a file at every path below /file/, and records all requests.

import { createHash } from 'node:crypto';
import { createServer } from 'node:http';
import { gzipSync } from 'node:zlib';

const fileSize = 256 * 1024;
const types = { '.js': 'text/javascript', '.svg': 'image/svg+xml' };
const trickle = 1024;
const trickleDelay = 200;

export class DownloadSite {
    /** The requests, as { method, path, cookie, referer, body, isOpen }. */
    requests = [];
    /** Pages by their paths: HTML, or { html, headers }. */
    pages = {};
    #server;
    #held = new Map();
    #responses = new Map();

    static async start() {
        const self = new DownloadSite();
        await new Promise(resolve => { self.#server.listen(0, resolve); });
        return self;
    }

    constructor() {
        this.#server = createServer((request, response) => void this.#serve(request, response));
    }

    get #port() { return this.#server.address().port; }
    get origin() { return `http://127.0.0.1:${this.#port}`; }
    get otherOrigin() { return `http://localhost:${this.#port}`; }

    get pageUrl() { return `${this.origin}/page`; }

    /** The bytes of the file at a path. */
    content(path) {
        const block = createHash('sha512').update(path).digest();
        return Buffer.alloc(fileSize, block);
    }

    /** The requests for a path, oldest first. */
    asked(path) { return this.requests.filter(each => each.path === path); }

    /** Sends the responses that were held back. */
    release(path) {
        this.#held.get(path)();
    }

    /** Breaks the connection of the last request for a path. */
    breakOff(path) { this.#responses.get(path).destroy(); }

    stop() {
        this.#server.closeAllConnections();
        return new Promise(resolve => { this.#server.close(resolve); });
    }

    async #serve(request, response) {
        const { pathname: path, searchParams: wishes } = new URL(request.url, this.origin);
        let body = '';
        for await (const chunk of request.setEncoding('latin1'))
            body += chunk;
        const { cookie = '', referer = '' } = request.headers;
        if (wishes.has('auth') && !request.headers.authorization) {
            response.writeHead(401, { 'WWW-Authenticate': 'Basic realm="files"' }).end();
            return;
        }
        const entry = { method: request.method, path, cookie, referer, body, isOpen: true };
        response.on('close', () => { entry.isOpen = false; });
        this.requests.push(entry);
        this.#responses.set(path, response);
        if (Object.hasOwn(this.pages, path)) {
            const { html = this.pages[path], headers = {} } = this.pages[path];
            const type = types[/\.\w+$/.exec(path)?.[0]] ?? 'text/html; charset=utf-8';
            response.writeHead(200, { 'Content-Type': type, ...headers }).end(html);
        } else if (wishes.has('to')) {
            response.writeHead(Number(wishes.get('by') ?? 302), { Location: wishes.get('to') }).end();
        } else if (path.startsWith('/file/')) {
            this.#serveFile(path, wishes, request, response);
        } else {
            response.writeHead(404).end();
        }
    }

    /**
     * wishes: "auth" (requires HTTP authentication), "once" (later requests are refused with this
     * status), "status" (other than 200), "gzip" (compressed, if accepted), "late" (the first response
     * waits for the release), "held" (after the first half, the rest of the first response comes slowly).
     */
    async #serveFile(path, wishes, request, response) {
        const isFirst = this.asked(path).length === 1;
        if (wishes.has('once') && !isFirst) {
            response.writeHead(Number(wishes.get('once'))).end('only once');
            return;
        }
        if (isFirst && wishes.has('late'))
            await new Promise(resolve => { this.#held.set(path, resolve); });
        const isZipped = wishes.has('gzip') && request.headers['accept-encoding'].includes('gzip');
        const content = isZipped ? gzipSync(this.content(path)) : this.content(path);
        response.writeHead(Number(wishes.get('status') ?? 200), {
            'Content-Type': 'application/octet-stream',
            'Content-Length': content.length,
            'Content-Disposition': `attachment; filename="${path.split('/').pop()}"`,
            ...isZipped && { 'Content-Encoding': 'gzip' },
        });
        if (!isFirst || !wishes.has('held')) {
            response.end(content);
            return;
        }
        // Firefox closes the connection of a cancelled download only when more data arrives.
        let sent = fileSize / 2;
        response.write(content.subarray(0, sent));
        const timer = setInterval(() => {
            response.write(content.subarray(sent, sent += trickle));
            if (sent >= fileSize)
                response.end();
        }, trickleDelay);
        response.on('close', () => clearInterval(timer));
        this.#held.set(path, () => {
            clearInterval(timer);
            response.end(content.subarray(sent));
        });
    }
}
