// The options page. Its fields are named after their place in the settings record.

import { ask, follow } from './lib/background.js';

const text = chrome.i18n.getMessage;
const form = document.getElementById('form');
const line = document.getElementById('line');
/** The values that the fields were given last, by their names. */
const given = new Map();
const storeWords = { busy: 'optionsStoreBusy', failure: 'optionsStoreFailed' };
let savedOnce = false;

const fields = () => [...form.elements].filter(field => field.name);
const valueOf = field => (field.type === 'checkbox' ? field.checked : field.value);
const isTouched = field => given.has(field.name) && valueOf(field) !== given.get(field.name);

function say(words, isProblem = false) {
    line.textContent = words;
    line.classList.toggle('problem', isProblem);
}

/** What the user has changed and not saved yet stays. */
function show(settings) {
    form.hidden = !settings;
    say(settings ? '' : text('optionsWaiting'));
    if (!settings)
        return;
    for (const field of fields()) {
        const value = field.name.split('.').reduce((part, name) => part[name], settings.browser);
        if (!isTouched(field))
            field[field.type === 'checkbox' ? 'checked' : 'value'] = value;
        given.set(field.name, value);
    }
}

/** Whether what was saved is stored, too; '' when nothing is in the way. */
function showStore(store) {
    if (store)
        say(text(storeWords[store]), true);
    else if (savedOnce)
        say(text('optionsSaved'));
}

async function save() {
    const changes = fields().filter(isTouched).map(field => [field.name, valueOf(field)]);
    try {
        show(await ask('changeSettings', { changes: Object.fromEntries(changes) }));
        savedOnce = true;
        showStore(await ask('store'));
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

function showCaptions(captions) {
    for (const each of document.querySelectorAll('[data-caption]'))
        each.textContent = captions[each.dataset.caption] ?? each.dataset.caption;
}

follow('captions', showCaptions);
follow('settings', show);
follow('store', showStore);
showCaptions(await ask('captions'));
show(await ask('settings'));
showStore(await ask('store'));
