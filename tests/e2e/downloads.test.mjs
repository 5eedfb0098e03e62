// Downloads in the service, with servers that break off, lie, are slow, or have another file the next
// time, and with a service that is killed at any moment.

import { deepStrictEqual, doesNotMatch, match, ok, rejects, strictEqual } from 'node:assert';
import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { mkdirSync, readFileSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe } from 'node:test';
import { setTimeout as pause } from 'node:timers/promises';
import { gzipSync } from 'node:zlib';
import { until } from '../../tools/drivers/hostprocess.mjs';
import { inHome } from './support/home.mjs';
import { sanitized } from './support/hosttest.mjs';
import { ConfigurableServer, bytesOf, hashOf } from './support/configurableserver.mjs';

const mebibyte = 1 << 20;
/** Gives users other than root a file system of their own. */
const asRoot = process.getuid() === 0 ? [] : ['--user', '--map-root-user'];
const canMount = spawnSync('unshare', [...asRoot, '--mount', 'mount', '-t', 'tmpfs', 'none', '/mnt']).status === 0;
const ending = '.kovdownload';

/** Starts the service with a file system of its own at one place. mount: the command; $1 in it is the argument. */
async function startMounted(home, mount, argument) {
    const service = spawn('unshare', [...asRoot, '--mount', 'sh', '-c', `${mount} && exec "$2" -service`, 'sh', argument, home.program('kov')],
                          { env: home.sandbox.environment(), stdio: 'ignore' });
    await until(() => home.kov('list').then(() => true, () => false), 'the service to serve');
    return service;
}

let server;
before(async () => { server = await ConfigurableServer.start(); });
after(() => server.stop());

const answer = (head, body = '') => `HTTP/1.1 ${head}\r\nContent-Length: ${body.length}\r\n\r\n${body}`;
const bytes = (head, body) => Buffer.concat([Buffer.from(`HTTP/1.1 200 OK\r\n${head}\r\n\r\n`), body]);

/** The server's response to the request for the file of that name, and the expected error. */
const refusals = {
    '401.bin': [{ status: 401, headers: { 'WWW-Authenticate': 'Basic' } }, /401|authentication/],
    '403.bin': [{ status: 403 }, /answered 403/],
    '404.bin': [{ raw: answer('404 No\x1b[2Jsuch thing') }, /^the server answered 404 No\ufffd\[2Jsuch/],
    '410.bin': [{ status: 410 }, /410 Gone/],
    'busy.bin': [{ status: 503 }, /503/],
    'login.zip': [{ raw: bytes('Content-Type: text/html; charset=utf-8\r\nContent-Length: 5', Buffer.from('login')) }, /web page/],
    'part.bin': [{ raw: answer('206 Partial Content\r\nContent-Range: bytes 0-1/9', 'ab') }, /nobody asked/],
    'huge.bin': [{ raw: bytes('Content-Length: 99999999999999999999', Buffer.from('a')) }, /impossible size/],
    'two.bin': [{ raw: bytes('Content-Length: 1\r\nContent-Length: 2', Buffer.from('ab')) }, /impossible size/],
    'petabyte.bin': [{ raw: bytes('Content-Length: 1125899906842624', Buffer.from('a')) }, /no room/],
    'brotli.bin': [{ raw: bytes('Content-Encoding: br', Buffer.from('abc')) }, /encoded as "br"/],
    'closed.bin': [{ raw: '' }, /closed/],
    'nothing.bin': [{ raw: bytes('Content-Length: 10', Buffer.alloc(0)) }, /closed|ended/],
    'none.bin': [{ raw: answer('204 No Content') }, /no file/],
    'hello.bin': [{ raw: 'hello\r\n\r\n' }, /./],
    'local.bin': [{ status: 302, headers: { Location: 'file:///etc/passwd' } }, /cannot be followed/],
    'loop.bin': [{ status: 302, headers: { Location: 'loop.bin' } }, /too often/],
};

const text = Buffer.from('what was compressed on the way '.repeat(1000));
const zipped = gzipSync(text);

/** The expected result: the response, the name and the bytes of the file. */
const arrivals = {
    'empty.bin': [{ raw: answer('200 OK') }, 'empty.bin', Buffer.alloc(0)],
    'unknown.bin': [{ raw: bytes('X: y', Buffer.from('hello')) }, 'unknown.bin', Buffer.from('hello')],
    'gzip.txt': [{ raw: bytes('Content-Encoding: gzip', zipped) }, 'gzip.txt', text],
    'zipped.tar.gz': [{ raw: bytes('Content-Encoding: gzip', zipped) }, 'zipped.tar.gz', zipped],
    'named': [{ raw: bytes('Content-Disposition: attachment; filename="../se\u009bnt.txt"', text) }, 'sent.txt', text],
    // Qt treats such a length as the last chunk; the server still has more data.
    'chunks.bin': [{ size: 3 * mebibyte, badChunkAt: mebibyte }, 'chunks.bin'],
};

describe('downloads', { concurrency: 4 }, () => {
    inHome('an offered download becomes a job only when its file arrives', async home => {
        mkdirSync(home.folder);
        const extension = home.extension();
        await Promise.all(Object.entries(refusals).map(async ([name, [what, reason]]) => {
            const { error, result } = await extension.download(server.respond(`/${name}`, what));
            strictEqual(result, '', name);
            match(error, reason, name);
        }));
        deepStrictEqual([await home.jobs(), home.files()], [[], []]);
        for (const [name, [what, file, content]] of Object.entries(arrivals)) {
            strictEqual((await extension.download(server.respond(`/${name}`, what))).result, '1', name);
            const job = await home.job((await home.jobs()).at(-1).id);
            deepStrictEqual([job.state, job.path], ['finished', join(home.folder, file)], JSON.stringify(job));
            const wanted = content ?? bytesOf(`/${name}`, 0, what.size);
            ok(home.file(file).equals(wanted), name);
        }

        // The browser's own file has the name until it learns that the download is taken.
        server.respond('/held.bin', { size: 5 });
        writeFileSync(join(home.folder, 'held.bin'), '');
        const item = { url: server.url('/held.bin'), suggestedName: 'a/../held.bin' };
        strictEqual((await extension.download(item)).result, '1');
        rmSync(join(home.folder, 'held.bin'));
        strictEqual((await extension.download(item)).result, '1');
        await until(() => home.files().includes('held (2).bin'), 'both files');
        strictEqual(home.file('held.bin').length, 5);

        // By the browser's size a truncated file is detected even if the server sends none.
        const caught = (path, what) => extension.create({ catchedDownloads: '1' }, {
            url: server.respond(path, what), fileSize: String(3 * mebibyte) });
        match((await caught('/half.bin', { size: mebibyte })).error, /another file: 1048576 bytes, not 3145728/);
        strictEqual((await caught('/cut.bin', { size: 3 * mebibyte, badChunkAt: mebibyte, ranges: false })).result, '1');
        await until(async () => (await home.jobs()).at(-1).error === 'the connection ended before the file did', 'the cut');
        await home.kov('remove', String((await home.jobs()).at(-1).id));

        // A silent server is given up long before the extension's own timeout.
        const began = performance.now();
        const silent = await extension.download(server.respond('/silent.bin', { hold: new Promise(() => {}), size: 5 }));
        match(silent.error, /does not answer/);
        ok(performance.now() - began < 40_000);

        // Picked downloads are added at once, even those that fail later.
        const many = await extension.download(...Object.keys(refusals).map(name => server.url(`/${name}`)));
        strictEqual(many.result, '1');
        await until(async () => (await home.jobs()).filter(job => job.state === 'failed').length >= 10, 'the failures');
        const shown = await home.kov('jobs');
        // eslint-disable-next-line no-control-regex
        doesNotMatch(shown + await home.kov('jobs', '--json'), /[\x00-\x08\x0b-\x1f\x7f-\x9f]/);
        match(shown, /^\d+\tfailed\t0\t-1\t\thttp:\S+404.bin\tthe server answered 404 .*$/m);
        await extension.end();
    });

    inHome('cookies, referrers and posted data go to the right servers only', async home => {
        const extension = home.extension();
        const elsewhere = server.respond('/3.bin', { size: 3 });
        server.respond('/1.bin', { status: 302, headers: { Location: '/2.bin', 'Set-Cookie': 'new=2; Path=/' } });
        server.respond('/2.bin', { status: 302, headers: { Location: elsewhere.replace('127.0.0.1', 'localhost') } });
        const page = server.url('/page?secret');
        strictEqual((await extension.download({
            url: server.url('/1.bin'), httpReferer: `${page}#there`, userAgent: 'Browser/1.0\nEvil: 1', httpCookies: 'given=a=b',
        })).result, '1');
        server.respond('/again', { status: 307, headers: { Location: '/form' } });
        server.respond('/form', { status: 303, headers: { Location: '/result.txt' } });
        server.respond('/result.txt', { size: 6 });
        strictEqual((await extension.download({ url: server.url('/again'), httpPostData: 'a=1&b=%00' })).result, '1');
        const asked = path => {
            const { method, headers, body } = server.requestsTo(path)[0];
            ok(!('evil' in headers) && headers['user-agent'] !== '');
            return [method, headers.referer, headers.cookie?.split('; ').sort().join('; '), body];
        };
        deepStrictEqual(asked('/1.bin'), ['GET', page, 'given=a=b', '']);
        deepStrictEqual(asked('/2.bin'), ['GET', page, 'given=a=b; new=2', '']);
        deepStrictEqual(asked('/3.bin'), ['GET', server.url('/'), undefined, '']);
        for (const path of ['/again', '/form'])
            deepStrictEqual(asked(path), ['POST', undefined, undefined, 'a=1&b=%00']);
        deepStrictEqual(asked('/result.txt'), ['GET', undefined, undefined, '']);
        await until(() => home.files().join() === '3.bin,result.txt', 'both files');
        // If the client disconnects before the answer, a form is not posted again.
        let refuse;
        const left = server.respond('/left', { status: 503, hold: new Promise(resolve => { refuse = resolve; }) });
        extension.download({ url: left, httpPostData: 'a=1' }).catch(() => {});
        await until(() => server.requestsTo('/left').length === 1, 'the form to be posted');
        const database = join(home.sandbox.home, '.local/share/Tessmark/Kovalo/downloads.sqlite');
        strictEqual(statSync(database).mode & 0o777, 0o600);
        await extension.end();
        refuse();
        await until(async () => (await home.jobs()).at(-1).state === 'failed', 'the form to be refused');
        strictEqual(server.requestsTo('/left').length, 1);
        await home.kov('quit');
        await until(() => home.sandbox.running('kov').length === 0, 'the service to end');
        ok(!readFileSync(database).includes('given'), 'cookies of finished downloads are forgotten');
    });

    inHome('a killed service resumes a file instead of starting over', async home => {
        const kills = process.env.KOVALO_FULL === '1' ? 100 : sanitized ? 5 : 20;
        const rate = 4 * mebibyte;
        const size = 2 * kills * mebibyte;
        const url = server.respond('/long.bin', { size, rate, breaks: [1, 2, 3, 4, 5].map(count => count * mebibyte) });
        const [id] = await home.add(url);
        for (let kill = 0; kill < kills; ++kill) {
            const last = (await home.jobs())[0];
            await until(async () => (await home.jobs())[0].receivedBytes >= Math.min(size, last.receivedBytes + mebibyte),
                        'progress');
            await home.kill();
        }
        const job = await home.job(id);
        strictEqual(job.state, 'finished', JSON.stringify(job));
        deepStrictEqual([home.files(), home.hash('long.bin')], [['long.bin'], hashOf('/long.bin', size)]);
        const requests = server.requestsTo('/long.bin');
        strictEqual(requests.filter(request => !request.headers.range).length, 1);
        // At most the data since the progress was stored, and data in flight.
        const sent = requests.reduce((sum, request) => sum + request.sent, 0);
        ok(sent < size + kills * 3 * rate, `${sent} bytes were sent`);
    });

    inHome('transient failures are retried, permanent ones are not, a changed file starts over', async home => {
        const [changed, posted, broken] = ['/changed.bin', '/lost.bin', '/busy.iso'].map(path => server.url(path));
        // Not at once: before a response, the network library would repeat the request by itself.
        server.respond('/changed.bin', { size: 3 * mebibyte, rate: 4 * mebibyte, breaks: [mebibyte] });
        server.respond('/lost.bin', { status: 404 });
        server.respond('/busy.iso', { status: 503, headers: { 'Retry-After': '1' } });
        const [first, second, third] = await home.add(changed, posted, broken);
        await home.job(first, 'waiting');
        server.respond('/changed.bin', { size: 2 * mebibyte, etag: '"2"', seed: 'another' });
        strictEqual((await home.job(second)).state, 'failed');
        await home.job(third, 'waiting');
        server.respond('/busy.iso', { size: 100, headers: { 'Last-Modified': 'Sun, 06 Nov 1994 08:49:37 GMT' } });
        await home.kov('set', 'TakeLastModifiedDateFromServer', '1');
        strictEqual((await home.job(third)).state, 'finished');
        strictEqual(statSync(join(home.folder, 'busy.iso')).mtime.toISOString(), '1994-11-06T08:49:37.000Z');
        strictEqual((await home.job(first)).state, 'finished');
        strictEqual(home.hash('changed.bin'), hashOf('another', 2 * mebibyte));
        deepStrictEqual(server.requestsTo('/changed.bin').map(request => [request.headers.range, request.headers['if-range']]),
                        [[undefined, undefined], [`bytes=${mebibyte}-${3 * mebibyte - 1}`, '"1"']]);
        strictEqual(server.requestsTo('/lost.bin').length, 1);

        // Manually.
        server.respond('/lost.bin', { size: 7 * mebibyte, rate: mebibyte });
        await home.kov('retry', String(second));
        await until(async () => (await home.jobs())[1].receivedBytes > 0, 'the second attempt');
        const watched = home.kov('jobs', '--watch');
        await pause(1500);
        await home.kov('pause', 'all');
        match(await watched, /^2\trunning\t[^]*^2\tpaused\t/m);
        deepStrictEqual((await home.jobs()).map(job => job.state), ['finished', 'paused', 'finished']);
        await until(async () => (await home.jobs())[1].connections === 0, 'the connection to end');
        deepStrictEqual(home.files().filter(file => file.endsWith(ending)), [`lost.bin${ending}`]);
        server.respond('/lost.bin', { size: 7 * mebibyte });
        await home.kov('resume', String(second));
        strictEqual((await home.job(second)).state, 'finished');
        strictEqual(home.hash('lost.bin'), hashOf('/lost.bin', 7 * mebibyte));
        const desktop = home.desktop();
        for (const [words, path] of [[['open', second], 'lost.bin'], [['folder', second], ''], [['folder'], '']])
            strictEqual(await desktop.opens(...words.map(String)), join(home.folder, path));
        await rejects(home.kov('open', '99'), /there is no download 99/);
        await home.kov('remove', '--file', String(second), String(first));
        deepStrictEqual([(await home.jobs()).length, home.files()], [1, ['busy.iso']]);
        await home.kov('remove', 'all');
        deepStrictEqual([await home.jobs(), home.files()], [[], ['busy.iso']]);
    });

    inHome('several connections for a server that limits the speed of each', async home => {
        const size = 24 * mebibyte;
        const rate = mebibyte;
        const urls = [server.respond('/wide.bin', { size, rate }), server.respond('/two.iso', { size, rate, connections: 2 })];
        const ids = await home.add(...urls);
        let most = 0;
        await until(async () => {
            const jobs = await home.jobs();
            most = Math.max(most, ...jobs.map(job => job.connections));
            return jobs.every(job => job.state === 'finished');
        }, 'both downloads');
        ok(most >= 3, `${most} connections`);
        strictEqual(ids.length, 2);
        strictEqual(home.hash('wide.bin'), hashOf('/wide.bin', size));
        strictEqual(home.hash('two.iso'), hashOf('/two.iso', size));
    });

    inHome('downloads wait while the disk is full, and continue when there is space', async home => {
        mkdirSync(home.folder);
        const service = await startMounted(home, 'mount -t tmpfs -o size=68m none "$1"', home.folder);
        const size = 40 * mebibyte;
        // Two begin, the second up to 1.5 s after the first, and fill the disk together; the third has no room.
        const names = ['fits.bin', 'fits.iso'];
        const ids = await home.add(...names.map(name => server.respond(`/${name}`, { size, rate: 8 * mebibyte })),
                                   server.respond('/never.bin', { size: 2 * size }));
        await home.job(ids[2], 'waiting');
        match((await home.jobs())[2].error, /no room/);
        await Promise.all(ids.map(id => home.job(id, 'waiting')));
        const errors = (await home.jobs()).map(job => job.error).sort();
        match(errors.join(), /^cannot write .*No space left on device,(cannot write|the disk is full).*,there is no room/);
        execFileSync('nsenter', ['-t', service.pid, '-m', ...asRoot.slice(0, 1),
                                 'mount', '-o', 'remount,size=300m', home.folder].map(String));
        await Promise.all(ids.map(id => home.job(id, 'finished')));
        const hashes = names.map(name => execFileSync('nsenter', ['-t', service.pid, '-m', ...asRoot.slice(0, 1),
                                                                  'sha256sum', join(home.folder, name)].map(String)));
        deepStrictEqual(hashes.map(hash => String(hash).slice(0, 64)), names.map(name => hashOf(`/${name}`, size)));
    }, { skip: !canMount });

    inHome('the speed limit is shared by all downloads, and can be lifted', async home => {
        const limit = mebibyte / 2;
        await home.add(server.respond('/first.bin', { size: 1 })); // starts the service
        await home.kov('set', 'MaxDownloadSpeed', String(limit));
        const names = ['slow.bin', 'slow.iso'];
        const began = performance.now();
        const ids = await home.add(...names.map(name => server.respond(`/${name}`, { size: 32 * mebibyte })));
        await until(async () => (await home.jobs()).reduce((sum, job) => sum + job.receivedBytes, 0) >= 2 * limit, 'a part');
        // A moment of the limit is there at once.
        ok(performance.now() - began > 1900, `${performance.now() - began} ms`);
        await home.kov('set', 'MaxDownloadSpeed', '0');
        for (const id of ids)
            strictEqual((await home.job(id)).state, 'finished');
        deepStrictEqual(names.map(name => home.hash(name)), names.map(name => hashOf(`/${name}`, 32 * mebibyte)));
    });

    inHome('HTTP/2, from a server whose certificate is trusted', async home => {
        const folder = join(home.sandbox.folder, 'trusted');
        mkdirSync(folder);
        const [key, cert] = ['key', 'own.pem'].map(name => join(folder, name));
        execFileSync('openssl', ['req', '-x509', '-newkey', 'ec', '-pkeyopt', 'ec_paramgen_curve:prime256v1', '-nodes', '-days', '2',
                                 '-subj', '/CN=own', '-addext', 'subjectAltName=IP:127.0.0.1', '-keyout', key, '-out', cert],
                     { stdio: 'pipe' });
        execFileSync('openssl', ['rehash', folder]);
        const secure = await ConfigurableServer.start({ key: readFileSync(key), cert: readFileSync(cert) });
        const size = 16 * mebibyte;
        const url = secure.respond('/secure.bin', { size, rate: size / 4 });
        const extension = home.extension();
        match((await extension.download(url)).error, /certificate/);
        deepStrictEqual([await home.jobs(), secure.requests], [[], []]);
        await home.kill();
        await startMounted(home, 'mount --bind "$1" /etc/ssl/certs', folder);
        strictEqual((await extension.download(url)).result, '1');
        const job = await home.job((await home.jobs())[0].id);
        deepStrictEqual([job.state, job.error, home.hash('secure.bin')], ['finished', '', hashOf('/secure.bin', size)]);
        deepStrictEqual([...new Set(secure.requests.map(each => each.version))], ['2.0']);
        await extension.end();
        await home.kill();
        await secure.stop();
    }, { skip: !canMount });
});
