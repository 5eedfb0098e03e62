// A cheap application's end of the link: it does not decode downloads.

import { createServer } from 'node:net';
import { join } from 'node:path';

// The encoding of texts and numbers on the link, see "Serializing Qt Data Types".
function linkText(text) {
    const characters = Buffer.from(text, 'utf16le').swap16();
    const length = Buffer.alloc(4);
    length.writeUInt32BE(characters.length);
    return Buffer.concat([length, characters]);
}
const linkValue = (type, bytes) => Buffer.concat([Buffer.from([0, 0, 0, type, 0]), bytes]);
const beforeId = Buffer.concat([linkText('id'), linkValue(4, Buffer.alloc(0))]);

/** The application's answer to a message with a job: the downloads were added. */
function answerTo(message) {
    const at = message.indexOf(beforeId) + beforeId.length;
    const entries = {
        name: linkValue(10, linkText('incomingDownloads')),
        reason: linkValue(10, linkText('finished')),
        id: linkValue(4, message.subarray(at, at + 8)),
        added: linkValue(1, Buffer.from([1])),
        aborted: linkValue(1, Buffer.from([0])),
        abortReason: linkValue(2, Buffer.alloc(4)),
        error: linkValue(10, linkText('')),
        isSilent: linkValue(1, Buffer.from([0])),
    };
    const parts = [Buffer.alloc(8)];
    for (const [key, value] of Object.entries(entries))
        parts.push(linkText(key), value);
    const frame = Buffer.concat(parts);
    frame.writeUInt32BE(frame.length - 4);
    frame.writeUInt32BE(Object.keys(entries).length, 4);
    return frame;
}

/**
 * Answers every download as added, and does not answer any other message.
 * @param {string} folder where the host looks for the application's socket
 */
export function serveAnswers(folder) {
    const part = linkText('incomingDownloads');
    const server = createServer(socket => {
        let chunks = [];
        let size = 0;
        socket.on('error', () => {});
        socket.on('data', chunk => {
            chunks.push(chunk);
            size += chunk.length;
            while (size >= 4) {
                if (chunks[0].length < 4)
                    chunks = [Buffer.concat(chunks)];
                const length = chunks[0].readUInt32BE() + 4;
                if (size < length)
                    return;
                const all = Buffer.concat(chunks);
                const message = all.subarray(4, length);
                chunks = [all.subarray(length)];
                size -= length;
                if (message.includes(part))
                    socket.write(answerTo(message));
            }
        });
    });
    return new Promise(resolve => {
        server.listen(join(folder, `kov6fs${process.getuid()}`), () => resolve(server));
    });
}
