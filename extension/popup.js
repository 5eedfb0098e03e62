// The popup: switches for capturing, the outcomes of the last downloads, and the page's media.

import { ask, follow } from './lib/backgroundclient.js';
import { outcomeInWords } from './lib/outcometexts.js';
import { requestSiteAccess } from './lib/siteaccess.js';
import { element, localize, make, showEntries, sizeInWords, text, timeInWords } from './lib/ui.js';

localize();
const [{ id: tabId, url: tabUrl = '', title: tabTitle = '' }] = await chrome.tabs.query({ active: true, currentWindow: true });

function openPage(path) {
    chrome.tabs.create({ url: chrome.runtime.getURL(path) });
    window.close();
}

const onClick = (id, action) => element(id).addEventListener('click', action);

/** Shows the error of a failed request to the background script. */
async function attempt(request, members) {
    try {
        return await ask(request, members);
    } catch (error) {
        showProblem(error.message);
        return undefined;
    }
}

// --- status --------------------------------------------------------------------------------------

let isConnected = false;
let isCatching = true;
let needsAccess = false;
let isNextKept = false;
/** The server that is left to the browser, if the page comes from one; else ''. */
let leftSite = '';

function showProblem(problem) {
    element('problem').hidden = !problem;
    element('problemText').textContent = problem ?? '';
    element('retry').hidden = isConnected; // no retry while connected
    element('grant').hidden = !isConnected || !needsAccess;
    element('dismiss').hidden = !isConnected || needsAccess;
}

function showState() {
    const isOff = !isCatching || needsAccess;
    const states = [[!isConnected, 'stateWaiting'], [isOff, 'stateOff'], [isNextKept, 'stateNext'],
                    [leftSite, 'stateSite'], [true, 'stateOn']];
    element('state').textContent = text(states.find(([holds]) => holds)[1], leftSite);
    element('keepNext').disabled = element('site').disabled = !isConnected || isOff;
}

function showStatus({ version, problem, ...status }) {
    isConnected = version !== '';
    ({ needsAccess } = status);
    showProblem(problem);
    showState();
}

onClick('why', () => openPage('help.html'));
onClick('help', () => openPage('help.html'));
onClick('options', () => chrome.runtime.openOptionsPage());
onClick('retry', async () => showStatus(await ask('retry')));
onClick('grant', requestSiteAccess);
onClick('dismiss', async () => showStatus(await ask('dismissProblem')));

// --- capturing -----------------------------------------------------------------------------------

function showSettings(settings) {
    element('catch').disabled = !settings;
    if (!settings)
        return;
    isCatching = settings.browser.monitor.enable;
    element('catch').checked = isCatching;
    showState();
    ask('site', { url: tabUrl }).then(showSite);
}

function showSite({ host, isLeft }) {
    element('siteRow').hidden = !host;
    element('siteText').textContent = text('leaveSite', host);
    element('site').checked = isLeft;
    leftSite = isLeft ? host : '';
    showState();
}

function showKeeping({ next, shortcut, modifier }) {
    isNextKept = next;
    element('keepNext').ariaPressed = String(next);
    showState();
    const ways = [modifier && text('keepByKey', text(`key_${modifier}`)), shortcut && text('keepByShortcut', shortcut)];
    element('keepHint').textContent = ways.filter(Boolean).join(' ');
}

element('catch').addEventListener('change', async event => {
    showSettings(await attempt('changeSettings', { changes: { 'monitor.enable': event.target.checked } })
        ?? await ask('settings'));
});
element('site').addEventListener('change', async event => {
    showSite(await attempt('leaveSite', { url: tabUrl, leave: event.target.checked })
        ?? await ask('site', { url: tabUrl }));
});
onClick('keepNext', async event => {
    showKeeping(await ask('keepNext', { next: event.target.ariaPressed !== 'true' }));
});

// --- the last downloads --------------------------------------------------------------------------

/** Symbols besides the text, to find an outcome at a glance. */
const marks = { application: '✓', browser: '↓' };

function showDownloads(downloads) {
    element('noDownloads').hidden = downloads.length > 0;
    showEntries(element('downloads'), downloads.map(download => {
        const { words, isProblem } = outcomeInWords(download);
        const mark = isProblem ? '!' : marks[download.state] ?? '–';
        const look = isProblem ? '.broken' : download.state === 'application' ? '.ok' : '';
        return make('li', { 'data-key': download.id }, make(`div.entry${look}`, {},
            make('span.mark', { ariaHidden: 'true', textContent: mark }),
            make('div.grow', {},
                make('span.name', { title: download.name }, make('bdi', { textContent: download.name || text('nameless') })),
                make(isProblem ? 'small.bad' : 'small', {}, words, ' ',
                    make('span.nowrap', { textContent: `· ${timeInWords(download.time)}` }))),
            isProblem ? make('button.icon', {
                textContent: '×',
                ariaLabel: text('dismiss'),
                title: text('dismiss'),
                onclick: async () => showDownloads(await ask('dismissOutcome', { id: download.id })),
            }) : null));
    }));
    element('downloads').tabIndex = element('downloads').scrollHeight > element('downloads').clientHeight ? 0 : -1;
}

// --- the page's media ----------------------------------------------------------------------------

async function downloadMedia(button, requestId) {
    if (button.ariaBusy === 'true')
        return;
    button.ariaBusy = 'true'; // a disabled one would lose the focus
    element('mediaSaid').textContent = text('handingOver');
    const status = await attempt('downloadMedia', { tabId, requestId });
    button.ariaBusy = 'false';
    element('mediaSaid').textContent = status && !status.problem ? text('mediaHandedOver') : '';
    if (status)
        showStatus(status);
}

/** The page's media, best first; null for pages that cannot be observed. */
function showMedia(media) {
    element('page').hidden = !media;
    element('noMedia').hidden = media?.length > 0;
    showEntries(element('media'), (media ?? []).map(({ requestId, title, kind, size, quality }) => {
        const details = [text(`kind_${kind}`), quality, sizeInWords(size)].filter(Boolean);
        const button = make('button.media', { onclick: () => downloadMedia(button, requestId) },
            make('span.name', { textContent: title, title }),
            make('small', { textContent: details.join(' · ') }));
        return make('li', { 'data-key': requestId }, button);
    }));
}

onClick('downloadAll', async () => {
    if (await attempt('chooseLinks', { tabId }) !== undefined)
        window.close();
});

// -------------------------------------------------------------------------------------------------

follow('status', showStatus);
follow('settings', showSettings);
follow('keeping', showKeeping);
follow('outcomes', showDownloads);
follow('page', page => {
    if (page.tabId === tabId)
        showMedia(page.media);
});
element('downloadAll').hidden = !/^https?:/.test(tabUrl);
element('pageTitle').textContent = tabTitle;
showStatus(await ask('status'));
showSettings(await ask('settings'));
showKeeping(await ask('keeping'));
showDownloads(await ask('outcomes'));
showMedia(await ask('media', { tabId }));
