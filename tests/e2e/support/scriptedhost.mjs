// A fake host. The parameter "answer" in the URL of a download selects its answer; the excluded servers
// in posted settings select what it reports about the store.

import { appendFileSync, existsSync } from 'node:fs';
import { join } from 'node:path';
import { FrameReader, encodeFrame } from '../../../tools/drivers/framing.mjs';

/** In milliseconds: a paused download continues after 5 s, and a small one is complete before it is paused. The
 *  late answer leaves a loaded machine enough time to see the download continue. */
const delays = { late: 10_000, soon: 1500, refusedSoon: 1500 };

const settings = {
    browser: {
        menu: { dllink: true, dlall: true, dlselected: true, dlvideo: true },
        monitor: {
            enable: true, allowDownload: false, skipSmallerThan: '0', skipExtensions: '', skipServers: '',
            skipServersEnabled: false, skipIfKeyPressed: false, video: { enable: false },
        },
    },
    locale: '',
};

const answers = {
    handshake: { version: 'scripted' },
    ui_strings: { strings: {} },
    query_settings: { settings },
};
const byWish = {
    added: { result: '1' },
    late: { result: '1' },
    soon: { result: '1' },
    refusedSoon: { error: 'the server says 410' },
    refused: { error: 'the server says 403' },
    declined: { result: '0' },
    neither: {},
};

/** The types of the received tasks, one per line, of all hosts one after another. */
const asked = join(process.env.TMPDIR, 'asked');
const isFirst = !existsSync(asked);

function answer(task) {
    const { type, id } = task;
    const reply = members => process.stdout.write(encodeFrame(JSON.stringify(
        { error: '', id, result: '', type, ...members })));
    if (type !== 'create_downloads') {
        reply(answers[type] ?? {});
        appendFileSync(asked, `${type}\n`);
        if (type === 'handshake' && isFirst)
            reply({ id: '', type: 'lost_download', result: 'gone.bin', error: 'why' });
        if (type === 'post_settings')
            reply({ id: '', type: 'settings_store', error: task.post_settings.browser.monitor.skipServers });
        return;
    }
    const wish = new URL(task.create_downloads.downloads.item[0].url).searchParams.get('answer');
    if (wish === 'ends')
        process.exit();
    if (wish !== 'silent')
        setTimeout(reply, delays[wish] ?? 0, byWish[wish ?? 'added']);
}

const reader = new FrameReader();
process.stdin.on('data', chunk => {
    reader.push(chunk);
    for (let text = reader.next(); text !== undefined; text = reader.next())
        answer(JSON.parse(text));
}).on('end', () => process.exit());
