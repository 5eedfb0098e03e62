// The videos of a page, chosen from the popup or the menu in real browsers, arrive in the application;
// nothing else does.

import { deepStrictEqual, ok, strictEqual } from 'node:assert';
import { after, before, describe, test } from 'node:test';
import { browserNames, hostProgram } from '../../../tools/drivers/browsers.mjs';
import { makeStream, played, wholeFilm } from '../support/streams.mjs';
import { BrowserFixture } from '../support/browserfixture.mjs';

/** Other resources of a page with a video. None of them may be mistaken for the video. */
const surroundings = {
    '/ads/poster.jpg': { type: 'image/jpeg' },
    '/ads/pixel.gif': { type: 'image/gif', content: 'GIF89a' },
    '/ads/beacon.mp4': { type: 'video/mp4', content: 'x'.repeat(20_000) },
    '/ads/gone.mp4': { type: 'video/mp4', status: 410 },
    '/ads/answer.json': { type: 'application/json' },
};

/** A page with a player; the script fetches as players do. get(path, first, last) gets a range. */
function playerPage(parts, script, more = '') {
    return `<title>Player</title><h1>Player</h1>
        <video id="empty" width="9" height="9" poster="${Object.keys(parts)[0]}"></video>
        <img src="${Object.keys(parts)[1]}">${more}
        <script>
            const get = async (path, first, last) => (await fetch(path,
                first === undefined ? {} : { headers: { Range: 'bytes=' + first + '-' + last } })).text();
            (async () => {
                for (const path of ${JSON.stringify(Object.keys(parts))}.slice(2))
                    await get(path);
                navigator.sendBeacon('/ads/seen');
                ${script}
                document.title = 'played';
            })();
        </script>`;
}

const film = path => ({ [path]: { type: 'video/mp4' } });
const inRanges = path => `for (const first of [0, 1e6, 2e6]) await get('${path}', first, first + 99_999);`;

const [hls, dash] = ['hls', 'dash'].map(makeStream);
const pieces = (stream, names, path, type) => Object.fromEntries(Object.entries(stream)
    .filter(([name]) => names.test(name)).map(([name, content]) => [path + name.replace(names, '$1'), { type, content }]));

/**
 * Pages; the file that "Download video" downloads for the element "at", and the popup's list.
 */
const pages = [
    {
        name: 'a file that an element plays',
        parts: film('/film/plain.mp4'),
        more: '<video id="player" src="/film/plain.mp4" controls></video>',
        at: '#player',
        wants: '/film/plain.mp4',
        lists: ['plain.mp4, Video · 3 MB'],
    },
    {
        name: 'a file fetched in ranges',
        parts: film('/film/ranges'),
        script: inRanges('/film/ranges'),
        at: 'h1',
        wants: '/film/ranges',
        lists: ['ranges, Video · 3 MB'],
    },
    {
        name: 'an HLS stream with its pieces elsewhere',
        parts: {
            '/hls/master.m3u8': {
                type: 'application/vnd.apple.mpegurl',
                content: '#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1000,RESOLUTION=320x180\n/low/list.m3u8\n',
            },
            '/low/list.m3u8': {
                type: 'application/vnd.apple.mpegurl',
                content: hls['list1.m3u8'].toString().replaceAll('list1.', '/pieces/'),
            },
            ...pieces(hls, /^list1\.(.*ts)$/, '/pieces/', 'video/mp2t'),
        },
        script: "for (const path of ['/hls/master.m3u8', '/low/list.m3u8', '/pieces/0.ts', '/pieces/1.ts']) await get(path);",
        at: 'h1',
        wants: '/hls/master.m3u8',
        isStream: true,
        lists: ['master.m3u8, Stream · 180p'],
    },
    {
        name: 'a DASH stream',
        parts: {
            '/dash/film.mpd': { type: 'application/dash+xml', content: dash['film.mpd'] },
            ...pieces(dash, /^(.*m4s)$/, '/dash/', 'video/mp4'),
        },
        script: "for (const path of ['/dash/film.mpd', '/dash/init-stream0.m4s']) await get(path);",
        at: 'h1',
        wants: '/dash/film.mpd',
        isStream: true,
        lists: ['film.mpd, Stream · 180p'],
    },
    {
        name: 'a file in a frame, beside a larger one on the page',
        parts: { '/film/trailer.mp4': { type: 'video/mp4', content: 'x'.repeat(5_000_000) } },
        script: "await get('/film/trailer.mp4');",
        more: '<iframe id="frame" src="/player/inner"></iframe>',
        at: '#frame',
        wants: '/film/inner.mp4',
        lists: ['inner.mp4, Video · 3 MB', 'trailer.mp4, Video · 4.8 MB'],
    },
    {
        name: 'a page that changes its address',
        parts: film('/film/app.mp4'),
        script: `${inRanges('/film/app.mp4')} history.pushState({}, '', '/another/address');`,
        at: 'h1',
        wants: '/film/app.mp4',
        lists: ['app.mp4, Video · 3 MB'],
    },
];

for (const name of browserNames) {
    describe(`videos in ${name}`, { timeout: 300_000 }, () => {
        let fixture;
        let popup;
        const arrived = [];
        before(async () => {
            fixture = await BrowserFixture.start(name, ['kov']);
            const innerParts = { ...film('/film/inner.mp4') };
            fixture.server.addPage('/player/inner', `<title>Inner</title><script>
                fetch('/film/inner.mp4').then(response => response.text());</script>`, innerParts);
            fixture.server.addPage('/save', '<h1>Save</h1><a id="save" href="/film/save.mp4" download>it</a>',
                                 film('/film/save.mp4'));
            for (const [index, page] of pages.entries()) {
                const around = Object.fromEntries(Object.entries(surroundings)
                    .map(([path, part]) => [path.replace('/ads/', `/ads/${index}-`), part]));
                fixture.server.addPage(`/player/${index}`, playerPage(around, page.script ?? '', page.more),
                                     { ...around, ...page.parts });
            }
            popup = await fixture.browser.openExtensionPage('popup.html');
        });
        after(() => fixture?.end());

        async function open(index) {
            await fixture.page.goto(`${fixture.server.origin}/player/${index}`);
            await fixture.until(async () => await fixture.page.title() === 'played', 'the page to play');
        }
        /** Resolves once a page's video has arrived: a file unchanged, or a stream as a film. Removes it. */
        async function arrives({ wants, isStream }) {
            if (isStream) {
                const { id, state, path } = await fixture.untilThere(
                    () => JSON.parse(fixture.application('jobs', '--json')).findLast(each => each.url.endsWith(wants)) ?? {},
                    job => ['finished', 'failed'].includes(job.state));
                strictEqual(state, 'finished', fixture.application('jobs'));
                deepStrictEqual(played(path), wholeFilm);
                fixture.application('remove', '--file', String(id));
            } else {
                arrived.push(wants);
            }
            await fixture.untilDownloaded(fixture.sandbox.downloads, arrived);
        }
        const listed = () => popup.evaluate(() => document.getElementById('page').hidden ? null
            : [...document.querySelectorAll('#media button')]
                .map(button => [...button.children].map(part => part.textContent).join(', ')).sort());
        /** Reloads the popup, as if it were opened over the page. */
        async function showPopup(address = fixture.page.url()) {
            const tabId = await fixture.tabId(address);
            await popup.evaluate(async id => {
                await chrome.tabs.update(id, { active: true });
                location.reload();
            }, tabId).catch(() => {}); // the answer may be lost with its page
        }
        async function popupLists(lists) {
            let now;
            await fixture.until(async () => {
                now = await listed().catch(() => 'loading');
                return JSON.stringify(now) === JSON.stringify(lists);
            }, 'the popup to list what was found').catch(error => {
                deepStrictEqual(now, lists, error.message);
            });
        }

        test('nothing is observed until the user asks; then the popup lists and downloads videos', async () => {
            await open(1);
            await showPopup();
            await popupLists([]);
            await open(1);
            await popupLists(pages[1].lists);
            await popup.evaluate(() => document.querySelector('#media button').click());
            arrived.push(pages[1].wants);
            await fixture.untilDownloaded(fixture.sandbox.downloads, arrived);
        });

        test('an option observes all pages', async () => {
            await fixture.extension.evaluate(() => {
                document.querySelector('[name="monitor.video.enable"]').click();
            });
            await fixture.until(async () => (await fixture.ask('settings')).browser.monitor.video.enable, 'the option to hold');
            await fixture.page.close(); // otherwise its tab would be observed
            fixture.page = await fixture.browser.browser.newPage();
        });

        for (const [index, page] of pages.entries()) {
            test(`the menu gets ${page.name}`, async () => {
                await open(index);
                await showPopup();
                await popupLists(page.lists);
                await fixture.chooseMenu(fixture.page, page.at, 'dlvideo');
                await arrives(page);
                strictEqual((await fixture.ask('status')).problem, null);
                ok(fixture.server.requests.every(request => request.allowed), JSON.stringify(fixture.server.requests));
            });
        }

        test('a prerendered page', async () => {
            fixture.server.addPage('/ahead', `<a id="next" href="/player/1">next</a><script type="speculationrules">
                {"prerender": [{"source": "list", "urls": ["/player/1"], "eagerness": "immediate"}]}</script>`);
            fixture.server.requests.length = 0;
            await fixture.page.goto(`${fixture.server.origin}/ahead`);
            const isPlayed = () => fixture.server.requests.filter(each => each.path === pages[1].wants).length === 3;
            if (name === 'chromium')
                await fixture.until(isPlayed, 'the page to be rendered ahead');
            await fixture.page.click('#next');
            await fixture.until(isPlayed, 'the page to be shown');
            await showPopup(`${fixture.server.origin}/player/1`);
            await popupLists(pages[1].lists);
        });

        test('found media survive the end of the script and of the host', async () => {
            fixture.page = await fixture.browser.browser.newPage(); // the tab was replaced by that of the prerendered page
            const { wants, lists } = pages[2];
            await open(2);
            await showPopup();
            await popupLists(lists);
            await fixture.until(() => fixture.extension.evaluate(
                async path => JSON.stringify(await chrome.storage.session.get()).includes(path), wants),
            'the script to keep what it found');
            const hosts = fixture.sandbox.running(hostProgram);
            await fixture.browser.stopScript();
            await fixture.until(() => !hosts.some(pid => fixture.sandbox.running(hostProgram).includes(pid)), 'the host to end');
            await fixture.until(async () => (await fixture.ask('status')).version !== '', 'another host to answer');
            await fixture.page.evaluate(async () => (await fetch('/pieces/1.ts')).text());
            await showPopup();
            await popupLists(lists);
            await fixture.chooseMenu(fixture.page, 'h1', 'dlvideo');
            await arrives(pages[2]);
            // The next host starts while the script keeps running.
            const killed = fixture.sandbox.running(hostProgram);
            for (const pid of killed)
                process.kill(pid, 'SIGKILL');
            await fixture.until(() => fixture.sandbox.running(hostProgram).some(pid => !killed.includes(pid)), 'a new host');
            await fixture.chooseMenu(fixture.page, 'h1', 'dlvideo');
            await arrives(pages[2]);
        });

        test('downloads of the browser itself are no videos, and the user sees that there are none', async () => {
            fixture.application('set', 'WbInterceptDownloads', '0');
            await fixture.until(async () => !(await fixture.ask('settings')).browser.monitor.enable, 'catching to be off');
            await fixture.page.goto(`${fixture.server.origin}/save`);
            await fixture.page.click('#save');
            await fixture.untilDownloaded(fixture.sandbox.downloads, [...arrived, '/film/save.mp4']);
            await showPopup();
            await popupLists([]);
            await fixture.chooseMenu(fixture.page, 'h1', 'dlvideo');
            await fixture.until(async () => (await fixture.ask('status')).problem
                === 'No video was seen here. Play it, or load the page again, and try once more.', 'the words');
        });
    });
}
