// The popup says how things are, and offers what can be done about it.

import { ask, follow } from './lib/background.js';

const text = chrome.i18n.getMessage;
const element = id => document.getElementById(id);

function show({ version, problem }) {
    element('status').textContent = problem
        ?? (version ? text('statusConnected', version) : text('statusConnecting'));
    element('status').classList.toggle('problem', problem !== null);
    element('retry').hidden = problem === null || version !== ''; // what is connected cannot be tried again
}

element('retry').textContent = text('retry');
element('retry').addEventListener('click', async () => show(await ask('retry')));

element('options').textContent = text('openOptions');
element('options').addEventListener('click', () => chrome.runtime.openOptionsPage());

element('downloadAll').addEventListener('click', async () => show(await ask('downloadAll', { tabId })));

function showCaptions({ dlall }) {
    element('downloadAll').textContent = dlall ?? '';
    element('downloadAll').hidden = !dlall;
}

const kinds = { video: 'kindVideo', audio: 'kindAudio', stream: 'kindStream' };

/** A size in the unit that suits it; nothing when it is not known. */
function sizeInWords(size) {
    if (size < 0)
        return [];
    const [unit, divisor] = [['gigabyte', 1e9], ['megabyte', 1e6], ['kilobyte', 1e3]].find(each => size >= each[1])
        ?? ['byte', 1];
    return [new Intl.NumberFormat(undefined, { style: 'unit', unit, maximumFractionDigits: 1 })
        .format(size / divisor)];
}

/** What was found on the page, best first; media is null where nothing can be. */
function showMedia(media) {
    element('page').hidden = !media;
    element('none').hidden = media?.length > 0;
    element('media').replaceChildren(...(media ?? []).map(({ requestId, title, kind, size, quality }) => {
        const button = document.createElement('button');
        button.textContent = [title, text(kinds[kind]), quality, ...sizeInWords(size)].filter(Boolean).join(', ');
        button.addEventListener('click', async () => show(await ask('downloadMedia', { tabId, requestId })));
        const entry = document.createElement('li');
        entry.append(button);
        return entry;
    }));
}

for (const each of document.querySelectorAll('[data-text]'))
    each.textContent = text(each.dataset.text);

const [{ id: tabId }] = await chrome.tabs.query({ active: true, currentWindow: true });
follow('status', show);
follow('captions', showCaptions);
follow('page', page => {
    if (page.tabId === tabId)
        showMedia(page.media);
});
show(await ask('status'));
showCaptions(await ask('captions'));
showMedia(await ask('media', { tabId }));
