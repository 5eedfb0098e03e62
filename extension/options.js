// The options page changes the settings that the application keeps for the extension. Its fields
// are named after their place in the settings record.

import { ask, follow } from './lib/background.js';

const text = chrome.i18n.getMessage;
const form = document.getElementById('form');
const line = document.getElementById('line');
let settings = null;

const fields = () => [...form.elements].filter(field => field.name)
    .map(field => ({ field, path: field.name.split('.') }));

function say(words, isProblem = false) {
    line.textContent = words;
    line.classList.toggle('problem', isProblem);
}

function show(current) {
    settings = current;
    form.hidden = !settings;
    if (!settings) {
        say(text('optionsWaiting'));
        return;
    }
    say('');
    for (const { field, path: [group, name] } of fields()) {
        const value = settings.browser[group][name];
        if (field.type === 'checkbox')
            field.checked = value;
        else
            field.value = value;
    }
}

async function save() {
    const changed = structuredClone(settings);
    for (const { field, path: [group, name] } of fields())
        changed.browser[group][name] = field.type === 'checkbox' ? field.checked : field.value;
    try {
        show(await ask('saveSettings', { settings: changed }));
        say(text('optionsSaved'));
    } catch (error) {
        say(error.message, true);
    }
}

for (const each of document.querySelectorAll('[data-text]'))
    each.textContent = text(each.dataset.text);
form.addEventListener('submit', event => {
    event.preventDefault();
    save();
});

const captions = await ask('captions');
for (const each of document.querySelectorAll('[data-caption]'))
    each.textContent = captions[each.dataset.caption] ?? each.dataset.caption;
follow('settings', show);
show(await ask('settings'));
