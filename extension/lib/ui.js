// Helpers of the extension's pages: localized texts, elements, formatted values.

export const text = chrome.i18n.getMessage;

/** The language of the texts, which may differ from the browser's. */
const language = text('language');

/**
 * Localizes a page: data-text is an element's text, data-label its accessible name and tooltip,
 * data-hint the placeholder of a field.
 */
export function localize(title) {
    document.documentElement.lang = language;
    document.documentElement.dir = text('direction');
    document.title = title ? `${title} – ${text('extensionName')}` : text('extensionName');
    for (const each of document.querySelectorAll('[data-text]'))
        each.textContent = text(each.dataset.text);
    for (const each of document.querySelectorAll('[data-label]')) {
        each.ariaLabel = text(each.dataset.label);
        each.title = text(each.dataset.label);
    }
    for (const each of document.querySelectorAll('[data-hint]'))
        each.placeholder = text(each.dataset.hint);
}

export const element = id => document.getElementById(id);

/**
 * Creates an element. Members that are not properties of the element become attributes.
 * @param {string} name with its classes: "button.main"
 */
export function make(name, members = {}, ...children) {
    const [tag, ...classes] = name.split('.');
    const made = document.createElement(tag);
    made.classList.add(...classes);
    for (const [key, value] of Object.entries(members)) {
        if (key.startsWith('on'))
            made.addEventListener(key.slice(2), value);
        else if (key in made)
            made[key] = value;
        else
            made.setAttribute(key, value);
    }
    made.append(...children.filter(child => child !== null && child !== undefined));
    return made;
}

/**
 * Updates a list. The focus stays on its entry, or moves to the one that takes its place.
 * @param {HTMLElement[]} entries each with a unique data-key, and at most one button
 */
export function showEntries(list, entries) {
    const focused = [...list.children].findIndex(each => each.contains(document.activeElement));
    const key = list.children[focused]?.dataset.key;
    list.replaceChildren(...entries);
    if (key !== undefined)
        (entries.find(each => each.dataset.key === key) ?? entries[focused] ?? entries.at(-1))?.querySelector('button')?.focus();
}

const units = ['byte', 'kilobyte', 'megabyte', 'gigabyte', 'terabyte'];

/** A size in a suitable unit (as in browsers, 1 KB is 1,024 bytes); '' when unknown. */
export function sizeInWords(bytes) {
    if (!(bytes >= 0))
        return '';
    let exponent = 0;
    for (let rest = bytes; rest >= 1024 && exponent < units.length - 1; rest /= 1024)
        ++exponent;
    return new Intl.NumberFormat(language, {
        style: 'unit', unit: units[exponent], unitDisplay: 'short', maximumFractionDigits: 1,
    }).format(bytes / 1024 ** exponent);
}

/** The short name of a unit: "MB". @param {string} unit its name in Intl */
export function unitName(unit) {
    return new Intl.NumberFormat(language, { style: 'unit', unit, unitDisplay: 'short' }).formatToParts(1)
        .find(part => part.type === 'unit').value;
}

/** How long ago something was. @param {number} time in milliseconds since 1970 */
export function timeInWords(time, now = Date.now()) {
    const format = new Intl.RelativeTimeFormat(language, { numeric: 'auto', style: 'short' });
    const seconds = Math.min(0, Math.round((time - now) / 1000));
    if (seconds > -60)
        return format.format(0, 'second');
    if (seconds > -3600)
        return format.format(Math.trunc(seconds / 60), 'minute');
    if (seconds > -86_400)
        return format.format(Math.trunc(seconds / 3600), 'hour');
    return format.format(Math.trunc(seconds / 86_400), 'day');
}

/** Numbers in the format of the language. */
export function numberInWords(number) { return new Intl.NumberFormat(language).format(number); }
