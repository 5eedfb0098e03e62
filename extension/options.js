// The options page. Each row of the table is one option; changes are stored at once.

import { ask, follow } from './lib/backgroundclient.js';
import { modifiers } from './lib/gestures.js';
import { understandEndings, understandServers } from './lib/masks.js';
import { isPreference } from './lib/preferences.js';
import { valueAt } from './lib/settings.js';
import { element, localize, make, text, unitName } from './lib/ui.js';

/**
 * The options in groups: the path in the settings record or in the preferences, the kind of field, and
 * the key of the label. hint: the key of a line below. needs: the option that enables it.
 */
const groups = [
    { title: 'optionsCatching', rows: [
        { path: 'monitor.enable', kind: 'switch', text: 'optionEnable', hint: 'optionEnableHint' },
        { path: 'monitor.allowDownload', kind: 'switch', text: 'optionAllowDownload' },
        { path: 'keeping.modifier', kind: 'choice', text: 'optionKeepKey', hint: 'optionKeepKeyHint',
          choices: ['', ...modifiers], choiceText: 'key_' },
    ] },
    { title: 'optionsLeft', rows: [
        { path: 'monitor.skipSmallerThan', kind: 'size', text: 'optionSkipSmallerThan' },
        { path: 'monitor.skipExtensions', kind: 'list', text: 'optionSkipExtensions', hint: 'optionSkipExtensionsHint',
          understand: understandEndings, separator: ' ' },
        { path: 'monitor.skipServersEnabled', kind: 'switch', text: 'optionSkipServersEnabled' },
        { path: 'monitor.skipServers', kind: 'list', text: 'optionSkipServers', hint: 'optionSkipServersHint',
          understand: understandServers, separator: '\n', needs: 'monitor.skipServersEnabled' },
    ] },
    { title: 'optionsSigns', rows: [
        { path: 'notify.badge', kind: 'switch', text: 'optionBadge' },
        { path: 'notify.failures', kind: 'switch', text: 'optionNotifyFailures' },
        { path: 'notify.successes', kind: 'switch', text: 'optionNotifySuccesses' },
    ] },
    { title: 'optionsMenus', rows: [
        { path: 'menu.dllink', kind: 'switch', text: 'optionMenuLink' },
        { path: 'menu.dlselected', kind: 'switch', text: 'optionMenuSelected' },
        { path: 'menu.dlall', kind: 'switch', text: 'optionMenuAll' },
        { path: 'menu.dlvideo', kind: 'switch', text: 'optionMenuVideo' },
    ] },
    { title: 'optionsVideos', rows: [
        { path: 'monitor.video.enable', kind: 'switch', text: 'optionVideo', hint: 'optionVideoHint' },
    ] },
];

const storeWords = { busy: 'optionsStoreBusy', failure: 'optionsStoreFailed' };

const savedShown = 3000;
let savedTimer = 0;

function saySaved(key) {
    clearTimeout(savedTimer);
    element('saved').textContent = text(key);
    savedTimer = setTimeout(() => { element('saved').textContent = ''; }, savedShown);
}

function showProblem(words) {
    element('problem').hidden = !words;
    element('problemText').textContent = words ?? '';
}

/** Changes are in effect but not stored yet; '' once they are. */
function showStore(store) {
    element('store').hidden = !store;
    element('store').textContent = store ? text(storeWords[store]) : '';
}

/** Stores a change and shows the resulting record. */
async function save(changes) {
    try {
        if (Object.keys(changes).some(isPreference))
            showPreferences(await ask('changePreferences', { changes }));
        else
            show(await ask('changeSettings', { changes }));
        showProblem('');
        const unstored = await ask('store');
        showStore(unstored);
        if (!unstored)
            saySaved('optionsSaved');
    } catch (error) {
        show(await ask('settings'));
        showProblem(error.message);
        element('problem').scrollIntoView({ block: 'nearest' });
    }
}

// --- the kinds of fields: each creates its elements, and returns a function that shows a value ----

const byteUnits = [['kilobyte', 1024], ['megabyte', 1024 ** 2], ['gigabyte', 1024 ** 3]];

const fields = {
    switch({ path }, id) {
        const input = make('input', { id, type: 'checkbox', role: 'switch' });
        input.addEventListener('change', () => save({ [path]: input.checked }));
        return { input, isBesideText: true, show: value => { input.checked = value; } };
    },

    choice({ path, choices, choiceText }, id) {
        const input = make('select', { id }, ...choices.map(
            value => make('option', { value, textContent: text(choiceText + (value || 'none')) })));
        input.addEventListener('change', () => save({ [path]: input.value }));
        return { input, show: value => { input.value = value; } };
    },

    /** In bytes in the record; a number and a unit in the page. */
    size({ path }, id) {
        const input = make('input', { id, type: 'number', min: '0', step: 'any', required: true });
        const unit = make('select', { ariaLabel: text('unit') }, ...byteUnits.map(
            ([name, factor]) => make('option', { value: factor, textContent: unitName(name) })));
        const saveSize = () => {
            if (input.reportValidity())
                save({ [path]: Math.round(Number(input.value) * Number(unit.value)) });
        };
        input.addEventListener('change', saveSize);
        unit.addEventListener('change', saveSize);
        return {
            input,
            more: [unit],
            show: value => {
                const bytes = Number(value);
                if (input.value !== '' && Number(input.value) * Number(unit.value) === bytes)
                    return; // keeps the unit that the user has chosen
                const [, factor] = byteUnits.findLast(each => bytes >= each[1]) ?? byteUnits[0];
                unit.value = factor;
                input.value = bytes / factor;
            },
        };
    },

    /**
     * Masks, shown as parsed; entries that can never match are not stored. From left to right in every
     * language: where it is from right to left, "tmp*" would be shown as "*tmp".
     */
    list({ path, understand, separator }, id) {
        const describedBy = `${id}-understood`;
        const input = make('textarea', { id, rows: separator === '\n' ? 4 : 1, spellcheck: false, dir: 'ltr',
                                         'aria-describedby': describedBy });
        const chips = make('ul.chips', { id: describedBy, 'aria-live': 'polite' });
        const check = () => {
            const { masks, refused } = understand(input.value);
            input.ariaInvalid = String(refused.length > 0);
            // Show nothing if the parsed form is the same.
            const isPlain = input.value.split(/\s+/).filter(Boolean).join(' ') === masks.join(' ');
            chips.replaceChildren(
                ...(isPlain ? [] : masks).map(mask => make('li', { dir: 'ltr', textContent: mask })),
                ...refused.map(({ entry, reason }) =>
                    make('li.bad', {}, make('bdi', { dir: 'ltr', textContent: entry }), `: ${text(reason)}`)));
            return { masks, refused };
        };
        input.addEventListener('input', check);
        input.addEventListener('change', () => {
            const { masks } = check();
            save({ [path]: masks.join(' ') });
        });
        return {
            input,
            below: [chips],
            show: value => {
                const isSame = understand(input.value).masks.join(' ') === value;
                if (!isSame) // refused entries stay in the field, to be corrected
                    input.value = value.split(' ').filter(Boolean).join(separator);
                if (separator === '\n')
                    input.rows = Math.min(Math.max(4, input.value.split('\n').length), 12);
                check();
            },
        };
    },
};

// --- the page ------------------------------------------------------------------------------------

const rows = new Map();

function makeRow(row) {
    const id = `option-${row.path.replaceAll('.', '-')}`;
    const field = fields[row.kind](row, id);
    field.input.name = row.path;
    rows.set(row.path, { ...row, field });
    const hint = row.hint ? make('small', { id: `${id}-hint`, textContent: text(row.hint) }) : null;
    if (hint)
        field.input.setAttribute('aria-describedby', [field.input.getAttribute('aria-describedby'), hint.id].filter(Boolean).join(' '));
    if (field.isBesideText) {
        return make('label.switch', {},
            make('span', {}, text(row.text), hint ? make('br') : null, hint), field.input);
    }
    return make('div.field', {},
        make('label', { htmlFor: id, textContent: text(row.text) }),
        make('div.row', {}, field.input, ...field.more ?? []),
        ...field.below ?? [], hint);
}

function showPreferences(values) {
    for (const { path, field } of rows.values()) {
        if (isPreference(path))
            field.show(values[path]);
    }
}

/** Fields are disabled until the application has sent their values. */
function show(settings) {
    for (const { path, needs, field } of rows.values()) {
        if (isPreference(path))
            continue;
        const value = valueAt(settings?.browser, path);
        field.input.disabled = value === undefined || (needs !== undefined && !valueAt(settings?.browser, needs));
        if (value !== undefined)
            field.show(value);
    }
    if (!settings)
        showProblem(text('optionsWaiting'));
    else if (element('problemText').textContent === text('optionsWaiting'))
        showProblem('');
}

function showStatus({ version, problem, needsAccess }) {
    element('version').textContent = version ? text('hostVersion', version) : '';
    element('retry').hidden = version !== ''; // no retry while connected
    if (!version || needsAccess)
        showProblem(problem ?? text('optionsWaiting'));
}

localize(text('optionsTitle'));
element('form').append(...groups.map(group => make('fieldset.card', {},
    make('legend', { textContent: text(group.title) }),
    make('div.rows', {}, ...group.rows.map(makeRow)))));
element('form').addEventListener('submit', event => event.preventDefault());
element('retry').addEventListener('click', async () => {
    showStatus(await ask('retry'));
    show(await ask('settings'));
});
follow('settings', show);
follow('preferences', showPreferences);
follow('store', showStore);
follow('status', showStatus);
showPreferences(await ask('preferences'));
show(await ask('settings'));
showStatus(await ask('status'));
showStore(await ask('store'));
