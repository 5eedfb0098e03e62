// Streams like those of web sites, made with ffmpeg: a short film in two qualities.

import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

const filmSeconds = 8;
const pieceSeconds = 2;

const ffmpeg = (folder, ...args) => execFileSync('ffmpeg', ['-loglevel', 'error', '-nostdin', ...args], { cwd: folder });
const hls = ['-f', 'hls', '-hls_time', pieceSeconds, '-hls_playlist_type', 'vod', '-master_pl_name', 'master.m3u8',
             '-hls_segment_filename', 'list%v.%d.ts', '-var_stream_map', 'v:0,a:0 v:1,a:1'];
const dash = ['-f', 'dash', '-seg_duration', pieceSeconds];
const formats = {
    /** master.m3u8, the better quality last: list1.m3u8 with list1.0.ts to list1.3.ts */
    hls: [...hls, 'list%v.m3u8'],
    /** The same, encrypted with key.bin. */
    aes: [...hls, '-hls_key_info_file', 'key.info', 'list%v.m3u8'],
    dash: [...dash, 'film.mpd'],
    webm: [...dash, '-dash_segment_type', 'webm', 'film.mpd'],
};
const codecs = {
    webm: ['-c:v', 'libvpx', '-deadline', 'realtime', '-cpu-used', '8', '-c:a', 'libopus'],
    usual: ['-c:v', 'libx264', '-preset', 'ultrafast', '-c:a', 'aac'],
};

/** The files of a stream by their names. */
export function makeStream(format) {
    const folder = mkdtempSync(join(tmpdir(), 'kov-stream-'));
    try {
        writeFileSync(join(folder, 'key.bin'), '16 bytes of key.');
        writeFileSync(join(folder, 'key.info'), 'key.bin\nkey.bin\n');
        ffmpeg(folder, '-f', 'lavfi', '-i', `testsrc2=size=320x180:rate=10:duration=${filmSeconds}`,
               '-f', 'lavfi', '-i', `sine=duration=${filmSeconds}`,
               '-map', '0:v', '-map', '1:a', '-map', '0:v', ...formats[format].includes('hls') ? ['-map', '1:a'] : [],
               '-filter:v:0', 'scale=160:90', ...codecs[format] ?? codecs.usual, '-g', '20', ...formats[format].map(String));
        return Object.fromEntries(readdirSync(folder).map(name => [name, readFileSync(join(folder, name))]));
    } finally {
        rmSync(folder, { recursive: true });
    }
}

/** A file's properties in a player: container, seconds, and codecs with the video's width. */
export function played(path) {
    const { format, streams } = JSON.parse(execFileSync('ffprobe', [
        '-v', 'error', '-print_format', 'json', '-show_streams', '-show_format', path]));
    // Reads every frame.
    execFileSync('ffmpeg', ['-v', 'error', '-xerror', '-nostdin', '-i', path, '-f', 'null', '-']);
    return {
        isMp4: format.format_name.split(',').includes('mp4'),
        seconds: Math.round(format.duration),
        streams: streams.map(({ codec_name: codec, width }) => width ? `${codec} ${width}` : codec).sort(),
    };
}

export const wholeFilm = { isMp4: true, seconds: filmSeconds, streams: ['aac', 'h264 320'] };
