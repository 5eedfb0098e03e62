// What among the answers to a page's requests is media, by the rules that the host goes by too.

import { lastSegment, withoutFragment } from './addresses.js';
import { headerValue } from './headers.js';

/** In bytes. What is smaller is a sound effect, a beacon or a placeholder. */
const smallest = 64 * 1024;

const playlistTypes = new Set([
    'application/vnd.apple.mpegurl', 'application/x-mpegurl', 'application/mpegurl', 'audio/mpegurl',
    'audio/x-mpegurl', 'application/dash+xml', 'video/vnd.mpeg.dash.mpd',
]);

/** The kind that a file name promises; the first that has its extension. */
const extensionsOfKinds = Object.entries({
    stream: 'm3u8 m3u mpd',
    video: '3g2 3gp amv asf avi divx drc dv f4a f4b f4p f4v flv m1v m2p m2t m2ts m2v m4p m4v mjpg mkv'
        + ' mov mp4 mpe mpeg mpg mpg2 mpv mts mxf nsv ogg ogm ogv qt rm rmvb roq svi ts vob vro webm wm'
        + ' wmv wtv xvid yuv',
    audio: 'aa aac aax ac3 act aif aifc aiff amr ape au awb caf dct dff dsf dss dts dvf eac3 ec3 flac'
        + ' gsm iklax kar m3a m4a m4b m4r mid midi mka mmf mp1 mp2 mp3 mpa mpc msv oga opus ra ram raw'
        + ' s3m sln snd spx tak tta vox wav weba wma wv xm',
}).map(([kind, extensions]) => [kind, new Set(extensions.split(' '))]);

const segmentName = /\.(ts|m4s|m4f|cmfv|cmfa|m2ts)$/;

function kindOfName(name) {
    const extension = name.slice(name.lastIndexOf('.') + 1).toLowerCase();
    return extensionsOfKinds.find(([, extensions]) => extensions.has(extension))?.[0] ?? '';
}

function kindOfType(type) {
    if (playlistTypes.has(type))
        return 'stream';
    if (/^video\/|^application\/(mp4|ogg)$/.test(type))
        return 'video';
    return type.startsWith('audio/') ? 'audio' : '';
}

/** The file name that a server suggests; '' when it suggests none. */
function suggestedName(headers) {
    const disposition = headerValue(headers, 'content-disposition');
    const extended = /filename\*\s*=\s*utf-8'[^']*'([^;\s]+)/i.exec(disposition)?.[1];
    const plain = /filename\s*=\s*(?:"([^"]*)"|([^;\s]+))/i.exec(disposition);
    try {
        return decodeURIComponent(extended ?? '') || (plain?.[1] ?? plain?.[2] ?? '');
    } catch {
        return plain?.[1] ?? plain?.[2] ?? '';
    }
}

/** The size of the whole resource, -1 when the answer does not tell. */
function sizeOf(status, headers) {
    // Content-Length counts the bytes on the wire, compressed where they are.
    const text = status === 206
        ? /\/\s*(\d+)\s*$/.exec(headerValue(headers, 'content-range'))?.[1]
        : !headerValue(headers, 'content-encoding') && headerValue(headers, 'content-length');
    return /^\d+$/.test(text || '') ? Number(text) : -1;
}

/**
 * What an answer is.
 * @param {object} details as a browser tells of an answer, with the headers
 * @returns {{kind: 'video'|'audio'|'stream', name: string, size: number}|null} null: no media
 */
export function mediaIn({ url, statusCode, responseHeaders }) {
    if (!(statusCode >= 200 && statusCode < 300 && statusCode !== 204) && statusCode !== 304)
        return null;
    const type = headerValue(responseHeaders, 'content-type').split(';')[0].trim().toLowerCase();
    const name = suggestedName(responseHeaders) || lastSegment(url);
    const saysNothing = !type || /^(application|binary)\/octet-stream$/.test(type);
    const kind = saysNothing ? kindOfName(name) : kindOfType(type);
    const size = kind === 'stream' ? -1 : sizeOf(statusCode, responseHeaders); // a playlist's says nothing
    if (!kind || (size >= 0 && size < smallest))
        return null;
    return { kind, name: name || new URL(url).host, size };
}

/** "scheme://host/folder/" of an address. */
function folderOf(url) { return url.split('?')[0].replace(/[^/]*$/, ''); }

/** The addresses that an HLS playlist names, line by line. */
export function addressesIn(text, playlistUrl) {
    return text.split('\n').flatMap(line => {
        const reference = line.startsWith('#') ? /URI="([^"]+)"/.exec(line)?.[1] : line.trim();
        try {
            return reference ? [withoutFragment(new URL(reference, playlistUrl).href)] : [];
        } catch {
            return [];
        }
    });
}

/**
 * Whether something is a piece of a stream: a segment, or a playlist that is one of the qualities
 * which another one offers.
 * @param {string[]} playlists the addresses of all playlists that were seen on the page
 * @param {string[]} named the addresses that they name, as far as they were read
 */
export function isPiece({ url, kind }, { playlists, named }) {
    if (playlists.length > 0 && (named.includes(url) || (kind !== 'stream' && segmentName.test(url.split('?')[0]))))
        return true;
    const own = folderOf(url);
    // Two streams may lie beside each other; what lies below a playlist belongs to it.
    return playlists.map(folderOf).some(
        folder => own.startsWith(folder) && (kind !== 'stream' || own !== folder));
}
