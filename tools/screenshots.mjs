// Takes pictures of the extension's pages as a user finds them, into docs/screenshots:
// node screenshots.mjs [PAGE]. In light and dark, narrow and wide, in German and in Arabic.

import { mkdirSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { ExtendedBrowser } from './drivers/browsers.mjs';
import { until } from './drivers/hostprocess.mjs';
import { Sandbox } from './drivers/sandbox.mjs';

const folder = fileURLToPath(new URL('../docs/screenshots', import.meta.url));
const wanted = process.argv[2] ?? '';

const looks = [
    { name: 'light', scheme: 'light', widths: [280, 1200], language: 'en' },
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

/** What has been going on, as the background script keeps it. */
function fill({ outcomes: told, links: found }) {
    return chrome.storage.session.set({
        'outcomes': told.toReversed(),
        'links.1': { links: found, title: 'Example downloads', documentUrl: 'https://example.org/', tab: { id: 1 } },
    });
}

const pages = { popup: 'popup.html', options: 'options.html', links: 'links.html#links.1', help: 'help.html' };

mkdirSync(folder, { recursive: true });
for (const { name, scheme, widths, language } of looks) {
    const sandbox = new Sandbox(['kov']);
    const browser = await ExtendedBrowser.launch('chromium', sandbox, { language });
    try {
        const first = await browser.openExtensionPage('options.html');
        await until(async () => (await first.evaluate(
            () => chrome.runtime.sendMessage({ request: 'settings' }))).value, 'the settings');
        await first.evaluate(fill, { outcomes, links });
        for (const [page, address] of Object.entries(pages).filter(([each]) => each.includes(wanted))) {
            const { page: tab } = await browser.openExtensionPage(address);
            await tab.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: scheme }]);
            for (const width of page === 'popup' ? [340] : widths) {
                await tab.setViewport({ width, height: 600 });
                await new Promise(resolve => { setTimeout(resolve, 300); });
                await tab.screenshot({ path: join(folder, `${page}-${name}-${width}.png`), fullPage: true });
            }
            await tab.close();
        }
    } finally {
        await browser.close();
        sandbox.remove();
    }
}
