// Shows the host at work: `node run.mjs pipes`, or with the name of a browser. Each message is
// printed as it goes in (>) and comes out (<). The last line and the exit status say how it went.

import { conversation, converse, farewell } from '../../tests/e2e/support/conversation.mjs';
import { HostProcess, until } from '../../tests/e2e/support/hostprocess.mjs';
import { Sandbox } from '../../tests/e2e/support/sandbox.mjs';

function show({ about, task }, answer) {
    console.log(`\n${about}\n  > ${JSON.stringify(task)}\n  < ${JSON.stringify(answer)}`);
}

function showFarewell() {
    console.log(`\nGood-bye. It has no answer; the host ends.\n  > ${JSON.stringify(farewell)}`);
}

async function throughPipes(sandbox) {
    const host = new HostProcess(sandbox);
    console.log(`The host runs as process ${host.pid}.`);
    try {
        await converse(task => host.ask(task), show);
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

async function throughBrowser(name, sandbox) {
    const { ExtendedBrowser, hostProgram } = await import('../../tests/e2e/support/browsers.mjs');
    const browser = await ExtendedBrowser.launch(name, sandbox);
    try {
        console.log(`${await browser.version()} runs the extension.`);
        await until(() => sandbox.running(hostProgram).length > 0, 'the extension to start the host');
        console.log(`The extension has started the host as process ${sandbox.running(hostProgram)}.`);
        const page = await browser.openExtensionPage('popup.html');
        await until(async () => (await page.evaluate(() => document.body.innerText)).includes('6.25'),
                    'the popup to tell the version');
        console.log(`Its popup says: ${await page.evaluate(() => document.body.innerText.split('\n')[0])}`);
        console.log('\nA page of the extension opens a port of its own.');
        const port = await browser.openPort(page);
        console.log(`The browser has started the host as process ${port.hostPid}.`);
        await converse(task => port.ask(task), show);
        showFarewell();
        await port.post(farewell);
        await port.hostEnded();
        console.log(`  process ${port.hostPid} has ended`);
        const second = await browser.openPort(page);
        console.log(`\nAnother port, with the host as process ${second.hostPid}, is closed.`);
        await second.close();
        await second.hostEnded();
        console.log(`  process ${second.hostPid} has ended`);
    } finally {
        await browser.close();
    }
}

const peer = process.argv[2] ?? 'pipes';
const sandbox = new Sandbox();
try {
    await (peer === 'pipes' ? throughPipes(sandbox) : throughBrowser(peer, sandbox));
    console.log(`\nOK: ${conversation.length} tasks answered as expected (${peer}), and the host ended.`);
} catch (error) {
    console.log(`\nFAILED: ${error.message}`);
    process.exitCode = 1;
} finally {
    sandbox.remove();
}
