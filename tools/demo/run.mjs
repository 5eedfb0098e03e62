// A demonstration of the host: `node run.mjs pipes`, or with the name of a browser. Prints each message
// to the host (>) and from it (<). The last line and the exit status are the result.

import { createHash } from 'node:crypto';
import { existsSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { conversation, converse, farewell } from '../drivers/conversation.mjs';
import { HostProcess, until } from '../drivers/hostprocess.mjs';
import { Sandbox } from '../drivers/sandbox.mjs';
import { WebServer } from '../drivers/webserver.mjs';

const filePath = '/files/data.bin';

function show({ about, task }, answer) {
    console.log(`\n${about}\n  > ${JSON.stringify(task)}\n  < ${JSON.stringify(answer)}`);
}

function showFarewell() {
    console.log(`\nGood-bye. It has no answer; the host ends.\n  > ${JSON.stringify(farewell)}`);
}

const checksum = bytes => createHash('sha256').update(bytes).digest('hex');

/** Waits until the application has the file, and compares it with the server's. */
async function compareDownload(sandbox, server) {
    const file = join(sandbox.downloads, WebServer.fileName(filePath));
    await until(() => existsSync(file), `the application to have ${file}`);
    const [wanted, found] = [checksum(WebServer.content(filePath)), checksum(readFileSync(file))];
    console.log(`  the application (process ${sandbox.running('kov')}) has it: ${file}\n`
        + `  sha256 on the server ${wanted}\n  sha256 on the disk   ${found}`);
    if (found !== wanted || server.requests.some(request => !request.allowed))
        throw new Error('that is not the file');
}

async function throughPipes(sandbox, server) {
    const host = new HostProcess(sandbox);
    console.log(`The host runs as process ${host.pid}.`);
    try {
        await converse(task => host.ask(task), show);

        const userAgent = 'demonstration';
        const page = await fetch(server.pageUrl, { headers: { 'User-Agent': userAgent } });
        const task = {
            id: '8',
            type: 'create_downloads',
            create_downloads: {
                downloads: {
                    item: [{
                        url: server.origin + filePath,
                        httpReferer: server.pageUrl,
                        userAgent,
                        httpCookies: page.headers.get('set-cookie').replace(/; Path=[^,]*,?/g, ';'),
                    }],
                },
                catchedDownloads: '1',
            },
        };
        const about = 'A download, from a server that demands cookie, referrer and user agent.';
        const answer = await host.ask(task);
        show({ about, task }, answer);
        if (answer.result !== '1')
            throw new Error('the application did not take the download');
        await compareDownload(sandbox, server);

        showFarewell();
        await host.send(farewell);
        const { code, signal } = await host.end();
        console.log(`  the process ended with status ${code ?? signal}`);
        if (code !== 0)
            throw new Error('the host did not end as it should');
    } finally {
        host.kill();
    }
}

async function throughBrowser(name, sandbox, server) {
    const { ExtendedBrowser, hostProgram } = await import('../drivers/browsers.mjs');
    const browser = await ExtendedBrowser.launch(name, sandbox);
    try {
        console.log(`${await browser.version()} runs the extension.`);
        await until(() => sandbox.running(hostProgram).length > 0, 'the extension to start the host');
        console.log(`The extension has started the host as process ${sandbox.running(hostProgram)}.`);
        const popup = await browser.openExtensionPage('popup.html');
        const popupLine = () => popup.evaluate(() => document.getElementById('state').textContent);
        await until(async () => (await popupLine()) === 'Downloads go to Kovalo.', 'the popup to say that it works');
        console.log(`Its popup says: ${await popupLine()}`);

        console.log('\nA page of the extension opens a port of its own.');
        const port = await browser.openPort(popup);
        console.log(`The browser has started the host as process ${port.hostPid}.`);
        await converse(task => port.ask(task), show);
        showFarewell();
        await port.post(farewell);
        await port.hostEnded();
        console.log(`  process ${port.hostPid} has ended`);
        const second = await browser.openPort(popup);
        console.log(`\nAnother port, with the host as process ${second.hostPid}, is closed.`);
        await second.close();
        await second.hostEnded();
        console.log(`  process ${second.hostPid} has ended`);

        console.log(`\nA user visits ${server.pageUrl} and clicks the link to a file.`);
        const page = await browser.browser.newPage();
        await page.goto(server.pageUrl);
        await page.click('#file');
        await compareDownload(sandbox, server);
        await until(async () => (await popup.evaluate(() => chrome.downloads.search({}))).length === 0,
                    'the browser to forget the download');
        console.log(`  the browser has let go of it; the popup says: ${await popupLine()}`);
    } finally {
        await browser.close();
    }
}

const peer = process.argv[2] ?? 'pipes';
const sandbox = new Sandbox(['kov']);
const server = await WebServer.start();
try {
    await (peer === 'pipes' ? throughPipes(sandbox, server) : throughBrowser(peer, sandbox, server));
    console.log(`\nOK (${peer}): ${conversation.length} tasks answered as expected, the download arrived`
        + ' byte for byte, and the host ended.');
} catch (error) {
    console.log(`\nFAILED: ${error.message}`);
    process.exitCode = 1;
} finally {
    await server.stop();
    sandbox.remove();
}
