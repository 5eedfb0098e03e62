// A configurable web server: generated files of any size, broken or slow connections, limits per
// connection, wrong headers, files that change between requests.

import { createCipheriv, createHash } from 'node:crypto';
import { once } from 'node:events';
import { createServer } from 'node:http';
import { setTimeout as pause } from 'node:timers/promises';

const block = 64 * 1024;

/** The bytes from..to of the file of that seed: a key stream, so that any part costs only itself. */
export function bytesOf(seed, from, to) {
    const key = createHash('sha256').update(String(seed)).digest().subarray(0, 16);
    const counter = Buffer.alloc(16);
    counter.writeBigUInt64BE(BigInt(Math.floor(from / 16)), 8);
    const cipher = createCipheriv('aes-128-ctr', key, counter);
    const skip = from % 16;
    return cipher.update(Buffer.alloc(to - from + skip)).subarray(skip);
}

export function hashOf(seed, size) {
    const hash = createHash('sha256');
    for (let from = 0; from < size; from += 1 << 20)
        hash.update(bytesOf(seed, from, Math.min(size, from + (1 << 20))));
    return hash.digest('hex');
}

export class ToldServer {
    /** What was asked for, in order: { path, method, headers, body, sent }. */
    requests = [];
    #files = new Map();
    #server = createServer((request, response) => this.#serve(request, response));

    static async start() {
        const self = new ToldServer();
        await new Promise(resolve => { self.#server.listen(0, '127.0.0.1', resolve); });
        return self;
    }

    stop() {
        this.#server.closeAllConnections();
        return new Promise(resolve => { this.#server.close(resolve); });
    }

    url(path, host = '127.0.0.1') { return `http://${host}:${this.#server.address().port}${path}`; }

    /** The requests for a path. */
    visits(path) { return this.requests.filter(request => request.path === path); }

    /**
     * Says what is at a path: { raw } for the very bytes of the answer, { status, headers } for one
     * without a file, else a file: { size, seed or content, headers }, with these to change how it comes:
     * etag (null: none), ranges (false: the whole file always), rate (bytes a second for each
     * connection), breaks ([bytes, ...]: after so many bytes the connection breaks, each once),
     * connections (how many at a time; 503 for the others), badChunkAt (sends it in chunks, and one
     * whose length is no number after so many bytes), hold (a promise to wait for first).
     */
    tell(path, what) {
        this.#files.set(path, { seed: path, etag: '"1"', ranges: true, open: 0, ...what });
        return this.url(path);
    }

    async #serve(request, response) {
        const entry = { path: request.url, method: request.method, headers: request.headers, body: '', sent: 0 };
        this.requests.push(entry);
        for await (const chunk of request.setEncoding('latin1'))
            entry.body += chunk;
        const file = this.#files.get(request.url) ?? { status: 404 };
        await file.hold;
        if (file.raw !== undefined) {
            response.socket?.end(file.raw);
        } else if (file.size === undefined) {
            response.writeHead(file.status, file.headers).end(file.body ?? 'sorry');
        } else if (file.connections && file.open >= file.connections) {
            response.writeHead(503).end();
        } else {
            ++file.open;
            response.once('close', () => { --file.open; });
            await this.#send(request, response, file, entry);
        }
    }

    async #send(request, response, file, entry) {
        const { size, seed, etag, rate } = file;
        const wanted = /^bytes=(\d+)-(\d*)$/.exec(request.headers.range);
        const isPart = wanted && file.ranges && [undefined, etag].includes(request.headers['if-range']);
        const from = isPart ? Number(wanted[1]) : 0;
        const to = isPart && wanted[2] ? Number(wanted[2]) + 1 : size;
        const cut = isPart ? undefined : file.badChunkAt;
        response.writeHead(isPart ? 206 : 200, {
            ...cut === undefined && { 'Content-Length': to - from },
            ...file.ranges && { 'Accept-Ranges': 'bytes' },
            ...etag && { ETag: etag },
            ...isPart && { 'Content-Range': `bytes ${from}-${to - 1}/${size}` },
            ...file.headers,
        });
        const began = performance.now();
        const closed = once(response, 'close');
        const limit = cut ?? file.breaks?.shift() ?? Infinity;
        for (let at = from; at < to && !response.destroyed;) {
            const next = Math.min(to, at + block, from + limit);
            if (!response.write(file.content?.subarray(at, next) ?? bytesOf(seed, at, next)))
                await Promise.race([once(response, 'drain'), closed]);
            entry.sent += next - at;
            at = next;
            if (at - from >= limit && at < to) {
                if (cut !== undefined)
                    response.socket?.write('zz\r\n\r\n');
                response.socket?.destroySoon();
                return;
            }
            const early = rate ? entry.sent / rate * 1000 - (performance.now() - began) : 0;
            if (early > 0)
                await pause(early);
        }
        response.end();
    }
}
