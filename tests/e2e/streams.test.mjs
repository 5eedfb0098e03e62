// Streams become one playable file, or none.

import { deepStrictEqual, match, ok, strictEqual } from 'node:assert';
import { spawn } from 'node:child_process';
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe } from 'node:test';
import { until } from '../../tools/drivers/hostprocess.mjs';
import { inHome } from './support/home.mjs';
import { makeStream, played, wholeFilm } from './support/streams.mjs';
import { ConfigurableServer } from './support/configurableserver.mjs';

let server;
before(async () => { server = await ConfigurableServer.start(); });
after(() => server.stop());

/** Serves a stream below a path. change(name, content) may return other content, or server options. */
function serve(path, files, change = (_name, content) => content) {
    for (const [name, content] of Object.entries(files)) {
        const what = change(name, content);
        server.respond(path + name, Buffer.isBuffer(what) || typeof what === 'string' ? { status: 200, body: what } : what);
    }
}

/** The command lines of the ffmpeg processes that save streams from below a path. */
const commandLines = path => readdirSync('/proc').filter(name => /^\d+$/.test(name)).map(pid => {
    try {
        return readFileSync(`/proc/${pid}/cmdline`, 'utf8').replaceAll('\0', ' ');
    } catch {
        return '';
    }
}).filter(line => /^\S*ffmpeg /.test(line) && line.includes('/dev/fd/') && line.includes(path));

describe('streams', { concurrency: 2 }, () => {
    let hls;
    before(() => { hls = makeStream('hls'); });

    inHome('saves the best quality with the headers of the browser, although the service is killed', async home => {
        let release;
        const hold = new Promise(resolve => { release = resolve; });
        const elsewhere = server.url('/far/list1.0.ts', 'localhost');
        serve('/far/', hls);
        serve('/film/', hls, (name, content) => ({
            'list1.m3u8': content.toString().replace('list1.0.ts', elsewhere).replace('list1.1.ts', '/film/list1.1.ts'),
            'list1.1.ts': { size: content.length, content, rate: 150_000 },
            'list1.2.ts': { size: content.length, content, rate: 150_000 },
            'list1.3.ts': { status: 200, body: content, hold },
            'master.m3u8': { status: 200, body: content, headers: { 'Set-Cookie': 'ticket=9; Path=/' } },
        }[name] ?? content));
        const page = server.url('/page?secret');
        const extension = home.extension();
        const { result } = await extension.ask('video_sniffer', { video_sniffer: {
            url: server.url('/film/master.m3u8'),
            requestHeaders: `referer: ${page}\r\ncookie: given=1\r\nuser-agent: Browser/1.0\r\n`,
        } });
        strictEqual(result, '1');
        for (const attempt of [1, 2]) {
            await until(async () => {
                const [{ state, percent }] = await home.jobs();
                // ffmpeg decides when to report more than 0 %.
                return state === 'running' && percent >= 0 && server.requestsTo('/film/list1.3.ts').length === attempt;
            }, `a part of it to be there, for the ${attempt}. time`);
            match(commandLines('/film/').join(), /^(?!.*(given|secret|ticket)).+/);
            await home.kill();
            await until(() => commandLines('/film/').length === 0, 'ffmpeg to end with the service');
            if (attempt === 2)
                release();
        }
        const job = await home.job(1);
        deepStrictEqual([job.state, job.error, home.files()], ['finished', '', ['master.mp4']]);
        deepStrictEqual(played(join(home.folder, 'master.mp4')), wholeFilm);
        const asked = path => {
            const { headers } = server.requestsTo(path)[0];
            return [headers['user-agent'], headers.referer, headers.cookie?.split('; ').sort().join('; ')];
        };
        deepStrictEqual(asked('/film/master.m3u8'), ['Browser/1.0', page, 'given=1']);
        deepStrictEqual(asked('/film/list1.1.ts'), ['Browser/1.0', page, 'given=1; ticket=9']);
        deepStrictEqual(asked('/far/list1.0.ts'), ['Browser/1.0', server.url('/'), undefined]);
        // Of the other qualities, only the beginning is read.
        strictEqual(server.requestsTo('/film/list0.3.ts').length, 0);
        await extension.end();
    });

    inHome('an incomplete stream leaves no file, and the reason is shown', async home => {
        serve('/dash/', makeStream('dash'));
        const broken = {
            'gone': [(name, content) => name === 'list1.2.ts' ? { status: 404 } : content, /404/],
            'local': [(name, content) => name.startsWith('list')
                ? content.toString().replaceAll(/^list\S+/gm, 'file:///etc/passwd.ts') : content, /cannot be followed|^ffprobe/],
            'text': [() => 'Film\n', /no playlist/],
            'empty': [() => '#EXTM3U\n', /^ffprobe: /],
            // Breaks off, once while it is only probed, and is resumed.
            'cut': [(name, content) => name === 'list1.2.ts'
                ? { size: content.length, content, breaks: [5000, 5000] } : content],
        };
        for (const [name, [change]] of Object.entries(broken))
            serve(`/${name}/`, hls, change);
        const ids = await home.add('--stream', ...Object.keys(broken).map(name => server.url(`/${name}/master.m3u8`)),
                                   server.url('/dash/film.mpd'));
        const jobs = await Promise.all(ids.map(id => home.job(id)));
        for (const [index, [, reason]] of Object.values(broken).entries()) {
            strictEqual(jobs[index].state, reason ? 'failed' : 'finished', JSON.stringify(jobs[index]));
            match(jobs[index].error, reason ?? /^$/);
        }
        ok(server.requestsTo('/cut/list1.2.ts').some(({ headers }) => headers.range === 'bytes=5000-'));
        for (const job of jobs.slice(-2))
            deepStrictEqual(played(job.path), wholeFilm);
        deepStrictEqual(home.files().filter(name => name.endsWith('.mp4')), ['film.mp4', 'master.mp4']);
        await home.kov('remove', ...ids.map(String));
        deepStrictEqual(home.files(), ['film.mp4', 'master.mp4']);
    });

    inHome('encrypted, WebM and live streams are saved completely', async home => {
        serve('/aes/', makeStream('aes'));
        serve('/webm/', makeStream('webm'));
        // Half of it is there at first.
        const whole = hls['list1.m3u8'].toString();
        const half = whole.slice(0, whole.indexOf('#EXTINF', whole.indexOf('list1.1.ts'))).replace('#EXT-X-PLAYLIST-TYPE:VOD\n', '');
        serve('/live/', hls, (name, content) => name === 'list1.m3u8' ? half : content);
        const ids = await home.add('--stream', server.url('/aes/master.m3u8'), server.url('/webm/film.mpd'), server.url('/live/list1.m3u8'));
        await until(() => commandLines('/live/').length > 0 && server.requestsTo('/live/list1.1.ts').length > 0,
                    'the live stream to be recorded');
        server.respond('/live/list1.m3u8', { status: 200, body: whole });
        const jobs = await Promise.all(ids.map(id => home.job(id)));
        deepStrictEqual(jobs.map(job => job.error), ['', '', '']);
        const inWebM = { ...wholeFilm, isMp4: false, streams: ['opus', 'vp8 320'] };
        deepStrictEqual(jobs.map(job => played(job.path)), [wholeFilm, inWebM, wholeFilm]);
        deepStrictEqual(home.files(), ['film.webm', 'list1.mp4', 'master.mp4']);
    });

    inHome('a missing ffmpeg is reported, and the stream retried once it is there', async home => {
        serve('/later/', hls);
        const service = spawn(home.program('kov'), ['-service'], {
            env: home.sandbox.environment({ PATH: '/nowhere' }), stdio: 'ignore',
        });
        await until(() => home.kov('list').then(() => true, () => false), 'the service to serve');
        const [id] = await home.add('--stream', server.url('/later/master.m3u8'));
        match(await home.job(id).then(job => `${job.state}: ${job.error}`), /^failed: .*install the package "ffmpeg"/);
        match(await home.kov('jobs'), /install the package "ffmpeg"/);
        service.kill('SIGKILL');
        await home.kov('retry', String(id));
        strictEqual((await home.job(id)).state, 'finished');
        deepStrictEqual(played(join(home.folder, 'master.mp4')), wholeFilm);
    });
});
