// Takes screenshots of the extension's pages with sample data, into docs/screenshots:
// node screenshots.mjs [PAGE]. In the light and the dark scheme, narrow and wide, in German and in
// Arabic, with empty lists, and with errors.

import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { ExtendedBrowser } from './drivers/browsers.mjs';
import { until } from './drivers/hostprocess.mjs';
import { Sandbox } from './drivers/sandbox.mjs';

const wanted = process.argv[2] ?? '';
const folder = fileURLToPath(new URL('../docs/screenshots', import.meta.url));

const looks = [
    { name: 'light', scheme: 'light', widths: [280, 1200], language: 'en', withStates: true },
    { name: 'dark', scheme: 'dark', widths: [340], language: 'en' },
    { name: 'de', scheme: 'light', widths: [400], language: 'de' },
    { name: 'ar', scheme: 'dark', widths: [400], language: 'ar' },
];

const minutes = 60_000;
const outcomes = [
    { name: 'debian-12.8.0-amd64-netinst.iso', state: 'application', reason: '', detail: '', ago: 2 * minutes },
    { name: 'holiday-photos.zip', state: 'browser', reason: '', detail: '', ago: 14 * minutes },
    { name: 'report.pdf', state: 'browser', reason: 'problemApplicationFailed', detail: 'HTTP 403', ago: 75 * minutes },
    { name: 'setup.exe', state: 'nowhere', reason: '', detail: '', ago: 26 * 60 * minutes },
].map((each, index) => ({ ...each, id: String(index), time: Date.now() - each.ago }));

const links = [
    ['https://example.org/files/manual.pdf', 'User manual'],
    ['https://cdn.example.org/media/introduction.mp4', 'Introduction (video)'],
    ['https://example.org/releases/source-2.1.tar.gz', 'Source code'],
    ['https://example.org/images/poster.png', 'Poster'],
    ['https://example.org/news/', 'News'],
    ['https://example.org/account/logout', 'Log out'],
].map(([url, text]) => ({ url, text, download: null, documentUrl: 'https://example.org/', policy: '', frameId: 0 }));

const media = [
    { requestId: '1', title: 'Introduction', kind: 'stream', size: -1, quality: '1080p' },
    { requestId: '2', title: 'Introduction (trailer)', kind: 'video', size: 48_300_000, quality: '720p' },
];
const tab = { id: 1, index: 0, url: 'https://example.org/', title: 'Example downloads' };
const waiting = { version: '', problem: null, needsAccess: false };

/** The answers to a page's requests, in place of the background script's. */
const told = {
    outcomes,
    media,
    site: { host: 'example.org', isLeft: false },
    links: { links, title: tab.title, documentUrl: tab.url, tab },
};
const missing = '__MSG_problemHostMissing__';
const pages = [
    { name: 'popup', address: 'popup.html', told },
    { name: 'options', address: 'options.html', told },
    { name: 'links', address: 'links.html', told },
    { name: 'help', address: 'help.html', told },
];
const states = [
    { name: 'popup-empty', address: 'popup.html', told: { ...told, outcomes: [], media: [] } },
    { name: 'popup-problem', address: 'popup.html', told: { ...told, status: { ...waiting, problem: missing }, settings: null } },
    { name: 'options-waiting', address: 'options.html', told: { ...told, status: waiting, settings: null } },
    { name: 'links-empty', address: 'links.html', told: { ...told, links: { ...told.links, links: [] } } },
    { name: 'help-broken', address: 'help.html',
      told: { ...told, check: { access: 'all', version: '', hostProblem: { key: 'problemHostMissing', words: missing }, lastProblem: null } } },
];

/** Runs in a page before its scripts. Texts are referenced as in a manifest. */
function answer({ told: answers, tab: shown }) {
    const inWords = (_name, value) => (typeof value === 'string'
        ? value.replace(/^__MSG_(.*)__$/, (_all, key) => chrome.i18n.getMessage(key)) : value);
    const send = chrome.runtime.sendMessage;
    chrome.runtime.sendMessage = async message => (message.request in answers
        ? { value: JSON.parse(JSON.stringify(answers[message.request]), inWords) } : send(message));
    chrome.tabs.query = async () => [shown];
}

/** Takes a screenshot of a whole page, or of the visible part of the popup. */
async function takePicture(page, width, path) {
    await page.setViewport({ width, height: 400 });
    // Beyond the viewport, right-to-left pages are drawn at a wrong position.
    const height = await page.evaluate(() => Math.ceil(document.body.getBoundingClientRect().bottom));
    await page.setViewport({ width, height });
    await page.evaluate(() => new Promise(resolve => { globalThis.requestAnimationFrame(resolve); }));
    await page.screenshot({ path });
}

for (const { name, scheme, widths, language, withStates } of looks) {
    const sandbox = new Sandbox(['kov']);
    const browser = await ExtendedBrowser.launch('chromium', sandbox, { language });
    try {
        const first = await browser.openExtensionPage('options.html');
        await until(async () => (await first.evaluate(
            () => chrome.runtime.sendMessage({ request: 'settings' }))).value, 'the settings');
        for (const { name: title, address, told: answers } of [...pages, ...withStates ? states : []]) {
            if (!title.includes(wanted))
                continue;
            const page = await browser.browser.newPage();
            await page.evaluateOnNewDocument(answer, { told: answers, tab });
            await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: scheme }]);
            await page.goto(browser.address(address));
            await page.waitForNetworkIdle();
            for (const width of address === 'popup.html' || title.includes('-') ? [360] : widths)
                await takePicture(page, width, join(folder, `${title}-${name}-${width}.png`));
            await page.close();
        }
    } finally {
        await browser.close();
        sandbox.remove();
    }
}
