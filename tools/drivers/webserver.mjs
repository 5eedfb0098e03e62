// A web site whose files require the cookie, the referrer and the user agent of the visit.

import { createHash, randomBytes } from 'node:crypto';
import { createServer } from 'node:http';

const fileSize = 3 * 1024 * 1024;
/** In milliseconds: the duration of a response with a file, so that its download can be caught meanwhile. */
const fileDelay = 1500;

const filesPage = `<title>Files</title>
    <h1>Files</h1>
    <a id="file" href="/files/data.bin">a file</a>
    <a id="small" href="/files/list.m3u">another</a>
    <p id="some" style="display: inline-block"><a href="/files/one.bin">1</a> <a href="/files/two.bin">2</a></p>
    <a id="moved" href="/moved">elsewhere</a>
    <a href="mailto:nobody@example.com">write</a>
    <form id="form" action="/report" method="post">
      <input name="name" value="Müller &amp; Söhne"><input name="year" value="2026">
      <button>Report</button></form>`;

export class WebServer {
    /** The requests, as { method, path, allowed }. */
    requests = [];
    #server;
    #session = randomBytes(8).toString('hex');
    #userAgent = '';
    #pages = new Map();
    #parts = new Map();

    static async start() {
        const self = new WebServer();
        await new Promise(resolve => { self.#server.listen(0, '127.0.0.1', resolve); });
        return self;
    }

    constructor() {
        this.#server = createServer((request, response) => this.#serve(request, response));
        this.addPage('/page', filesPage);
    }

    get origin() { return `http://127.0.0.1:${this.#server.address().port}`; }
    get pageUrl() { return `${this.origin}/page`; }

    static #contents = new Map();

    /** The bytes of the file at a path; every path has different ones. */
    static content(path) {
        if (!this.#contents.has(path))
            this.#contents.set(path, createHash('shake256', { outputLength: fileSize }).update(path).digest());
        return this.#contents.get(path);
    }

    /** Adds a page to the site. parts: its other resources, by paths, as { type, content, status }. */
    addPage(path, html, parts = {}) {
        this.#pages.set(path, html);
        for (const [partPath, part] of Object.entries(parts))
            this.#parts.set(partPath, { page: path, content: WebServer.content(partPath), status: 200, ...part });
    }

    /** The bytes of a file or of a part of a page. */
    content(path) { return Buffer.from(this.#parts.get(path)?.content ?? WebServer.content(path)); }

    stop() {
        this.#server.closeAllConnections();
        return new Promise(resolve => { this.#server.close(resolve); });
    }

    #serve(request, response) {
        const { pathname } = new URL(request.url, this.origin);
        if (this.#pages.has(pathname))
            this.#servePage(request, response, this.#pages.get(pathname));
        else if (this.#parts.has(pathname))
            this.#servePart(request, response, pathname);
        else if (pathname === '/moved')
            response.writeHead(302, { Location: '/files/moved.bin' }).end();
        else if (pathname.startsWith('/files/') || pathname === '/report')
            this.#serveFile(request, response, pathname);
        else
            response.writeHead(404).end();
    }

    #servePage(request, response, html) {
        this.#userAgent = request.headers['user-agent'];
        response.writeHead(200, {
            'Content-Type': 'text/html; charset=utf-8',
            'Referrer-Policy': 'unsafe-url',
            'Set-Cookie': [`session=${this.#session}; Path=/; HttpOnly`, 'lang=en; Path=/'],
        }).end(`<!DOCTYPE html>${html}`);
    }

    /** Whether a request comes from a page of this visit. */
    #isAllowed({ cookie = '', referer, 'user-agent': userAgent }, page) {
        return referer === this.origin + page && userAgent === this.#userAgent
            && cookie.split('; ').includes(`session=${this.#session}`);
    }

    #servePart(request, response, path) {
        const { page, type, status } = this.#parts.get(path);
        const allowed = this.#isAllowed(request.headers, page);
        this.requests.push({ method: request.method, path, allowed });
        if (!allowed) {
            response.writeHead(403).end('Come from the page.');
            return;
        }
        const content = this.content(path);
        const range = /^bytes=(\d+)-(\d*)$/.exec(request.headers.range);
        if (!range) {
            response.writeHead(status, { 'Content-Type': type, 'Content-Length': content.length }).end(content);
            return;
        }
        const part = content.subarray(Number(range[1]), range[2] ? Number(range[2]) + 1 : undefined);
        response.writeHead(206, {
            'Content-Type': type,
            'Content-Length': part.length,
            'Content-Range': `bytes ${range[1]}-${Number(range[1]) + part.length - 1}/${content.length}`,
        }).end(part);
    }

    async #serveFile(request, response, path) {
        let body = '';
        for await (const chunk of request.setEncoding('utf8'))
            body += chunk;
        const posted = path !== '/report'
            || (request.method === 'POST' && body === WebServer.formBody
                && request.headers['content-type'] === 'application/x-www-form-urlencoded');
        const allowed = posted && this.#isAllowed(request.headers, '/page');
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

    /** The data that the page's form posts. */
    static formBody = 'name=M%C3%BCller+%26+S%C3%B6hne&year=2026';

    static fileName(path) { return path === '/report' ? 'report.pdf' : path.split('/').pop(); }
}
