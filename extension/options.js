// The options page. What it offers is one table: a new option is one row there.

import { ask, follow } from './lib/background.js';

/** By the heading, the options with their place in the settings record. A caption is the host's. */
const groups = {
    optionsCatching: [
        { name: 'monitor.enable', text: 'optionEnable' },
        { name: 'monitor.allowDownload', text: 'optionAllowDownload' },
        { name: 'monitor.skipSmallerThan', text: 'optionSkipSmallerThan', type: 'number' },
        { name: 'monitor.skipExtensions', text: 'optionSkipExtensions', type: 'text' },
        { name: 'monitor.skipServersEnabled', text: 'optionSkipServersEnabled' },
        { name: 'monitor.skipServers', text: 'optionSkipServers', type: 'text' },
    ],
    optionsMenus: [
        { name: 'menu.dllink', caption: 'dllink' },
        { name: 'menu.dlselected', caption: 'dlselected' },
        { name: 'menu.dlall', caption: 'dlall' },
        { name: 'menu.dlvideo', caption: 'dlvideo' },
    ],
    optionsVideos: [{ name: 'monitor.video.enable', text: 'optionVideo' }],
};

const text = chrome.i18n.getMessage;
const form = document.getElementById('form');
const line = document.getElementById('line');
const storeWords = { busy: 'optionsStoreBusy', failure: 'optionsStoreFailed' };
/** The values that the fields were given last, by their names. */
const given = new Map();
let savedOnce = false;

const fields = () => [...form.elements].filter(field => field.name);
const valueOf = field => (field.type === 'checkbox' ? field.checked : field.value);
const isTouched = field => given.has(field.name) && valueOf(field) !== given.get(field.name);

function element(name, properties, ...children) {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
}

function row({ name, text: key, caption, type = 'checkbox' }) {
    const field = element('input', { name, type });
    if (type === 'number')
        Object.assign(field, { min: 0, max: 2 ** 31 - 1, step: 1, required: true });
    const words = element('span', { textContent: key ? text(key) : '' });
    if (caption)
        words.dataset.caption = caption;
    return element('label', {}, ...(type === 'checkbox' ? [field, ' ', words] : [words, ' ', field]));
}

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

/** Whether what was saved is stored, too. */
function showStore(store) {
    if (store)
        say(text(storeWords[store] ?? storeWords.failure), true);
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

form.prepend(...Object.entries(groups).map(([legend, options]) =>
    element('fieldset', {}, element('legend', { textContent: text(legend) }), ...options.map(row))));
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
