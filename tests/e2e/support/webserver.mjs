// A web site with files that are given only to who comes as its visitor does: with the cookie, the
// referrer and the user agent of the visit.

import { createHash, randomBytes } from 'node:crypto';
import { createServer } from 'node:http';

const fileSize = 3 * 1024 * 1024;
/** Files begin to come at once and end this much later: time to catch a download on its way. */
const fileDelay = 1500;

export class WebServer {
    /** What was asked for, as { method, path, allowed }. */
    requests = [];
    #server;
    #session = randomBytes(8).toString('hex');
    #userAgent = '';

    static async start() {
        const self = new WebServer();
        await new Promise(resolve => { self.#server.listen(0, '127.0.0.1', resolve); });
        return self;
    }

    constructor() {
        this.#server = createServer((request, response) => this.#serve(request, response));
    }

    get origin() { return `http://127.0.0.1:${this.#server.address().port}`; }
    get pageUrl() { return `${this.origin}/page`; }

    static #contents = new Map();

    /** The bytes of the file at a path, each its own. */
    static content(path) {
        if (!this.#contents.has(path)) {
            const blocks = [];
            for (let index = 0; index < fileSize / 64; ++index)
                blocks.push(createHash('sha512').update(`${path} ${index}`).digest());
            this.#contents.set(path, Buffer.concat(blocks));
        }
        return this.#contents.get(path);
    }

    stop() {
        this.#server.closeAllConnections();
        return new Promise(resolve => { this.#server.close(resolve); });
    }

    #serve(request, response) {
        const { pathname } = new URL(request.url, this.origin);
        if (pathname === '/page')
            this.#servePage(request, response);
        else if (pathname.startsWith('/files/') || pathname === '/report')
            this.#serveFile(request, response, pathname);
        else
            response.writeHead(404).end();
    }

    #servePage(request, response) {
        this.#userAgent = request.headers['user-agent'];
        response.writeHead(200, {
            'Content-Type': 'text/html; charset=utf-8',
            'Referrer-Policy': 'unsafe-url',
            'Set-Cookie': [`session=${this.#session}; Path=/; HttpOnly`, 'lang=en; Path=/'],
        }).end(`<!DOCTYPE html><title>Files</title>
            <a id="file" href="/files/data.bin">a file</a>
            <a id="small" href="/files/list.m3u">another</a>
            <p id="some"><a href="/files/one.bin">1</a> <a href="/files/two.bin">2</a></p>
            <a href="mailto:nobody@example.com">write</a>
            <form id="form" action="/report" method="post">
              <input name="name" value="Müller &amp; Söhne"><input name="year" value="2026">
              <button>Report</button></form>`);
    }

    async #serveFile(request, response, path) {
        let body = '';
        for await (const chunk of request.setEncoding('utf8'))
            body += chunk;
        const { cookie = '', referer, 'user-agent': userAgent } = request.headers;
        const posted = path !== '/report'
            || (request.method === 'POST' && body === WebServer.formBody
                && request.headers['content-type'] === 'application/x-www-form-urlencoded');
        const allowed = posted && referer === this.pageUrl && userAgent === this.#userAgent
            && cookie.split('; ').includes(`session=${this.#session}`);
        this.requests.push({ method: request.method, path, allowed });
        if (!allowed) {
            response.writeHead(403).end('Come from the page.');
            return;
        }
        const content = WebServer.content(path);
        response.writeHead(200, {
            'Content-Type': 'application/octet-stream',
            'Content-Length': content.length,
            'Content-Disposition': `attachment; filename="${WebServer.fileName(path)}"`,
        });
        response.write(content.subarray(0, content.length / 2));
        setTimeout(() => response.end(content.subarray(content.length / 2)), fileDelay);
    }

    /** What the page's form posts. */
    static formBody = 'name=M%C3%BCller+%26+S%C3%B6hne&year=2026';

    static fileName(path) { return path === '/report' ? 'report.pdf' : path.split('/').pop(); }
}
