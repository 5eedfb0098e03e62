// The fake host of the tests, which writes down when each task has come.

import { appendFileSync } from 'node:fs';
import { join } from 'node:path';
import '../tests/e2e/support/scriptedhost.mjs';
import { FrameReader } from '../tools/drivers/framing.mjs';

const reader = new FrameReader();
process.stdin.prependListener('data', chunk => {
    const time = performance.timeOrigin + performance.now();
    reader.push(chunk);
    for (let text = reader.next(); text !== undefined; text = reader.next()) {
        const { type, url, create_downloads: task } = JSON.parse(text);
        appendFileSync(join(process.env.TMPDIR, 'stamps'),
                       `${JSON.stringify({ time, type, url: url ?? task?.downloads.item[0].url })}\n`);
    }
});
