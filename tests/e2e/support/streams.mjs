// Streams like those of web sites, made with ffmpeg: a short film in two qualities.

import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, readdirSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

const filmSeconds = 8;
const pieceSeconds = 2;

const ffmpeg = (folder, ...args) => execFileSync('ffmpeg', ['-loglevel', 'error', '-nostdin', ...args], { cwd: folder });
const formats = {
    /** master.m3u8, the better quality last: list1.m3u8 with list1.0.ts to list1.3.ts */
    hls: ['-hls_time', pieceSeconds, '-hls_playlist_type', 'vod', '-master_pl_name', 'master.m3u8',
          '-hls_segment_filename', 'list%v.%d.ts', '-var_stream_map', 'v:0,a:0 v:1,a:1', 'list%v.m3u8'],
    dash: ['-seg_duration', pieceSeconds, 'film.mpd'],
};

/** The files of a stream by their names. */
export function makeStream(format) {
    const folder = mkdtempSync(join(tmpdir(), 'kov-stream-'));
    try {
        ffmpeg(folder, '-f', 'lavfi', '-i', `testsrc2=size=320x180:rate=10:duration=${filmSeconds}`,
               '-f', 'lavfi', '-i', `sine=duration=${filmSeconds}`,
               '-map', '0:v', '-map', '1:a', '-map', '0:v', ...format === 'hls' ? ['-map', '1:a'] : [],
               '-filter:v:0', 'scale=160:90', '-c:v', 'libx264', '-preset', 'ultrafast', '-g', '20', '-c:a', 'aac',
               '-f', format, ...formats[format].map(String));
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
