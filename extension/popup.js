// The popup says how things are, and offers what can be done about it.

import { ask, follow } from './lib/background.js';

const text = chrome.i18n.getMessage;
const element = id => document.getElementById(id);

function show({ version, problem }) {
    element('status').textContent = problem
        ?? (version ? text('statusConnected', version) : text('statusConnecting'));
    element('status').classList.toggle('problem', problem !== null);
    element('retry').hidden = problem === null;
}

element('retry').textContent = text('retry');
element('retry').addEventListener('click', async () => show(await ask('retry')));

element('options').textContent = text('openOptions');
element('options').addEventListener('click', () => chrome.runtime.openOptionsPage());

element('downloadAll').addEventListener('click', async () => {
    const [tab] = await chrome.tabs.query({ active: true, currentWindow: true });
    show(await ask('downloadAll', { tabId: tab.id }));
});

follow('status', show);
show(await ask('status'));
const { dlall } = await ask('captions');
element('downloadAll').textContent = dlall ?? '';
element('downloadAll').hidden = !dlall;
