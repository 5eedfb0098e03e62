// The referrer of picked links, by the page's referrer policy.
// https://www.w3.org/TR/referrer-policy/

import { isWebAddress, withoutFragment } from './addresses.js';

const usual = 'strict-origin-when-cross-origin';

/** What each policy sends: to the same origin, cross-origin, and on a downgrade to http. */
const policies = {
    'no-referrer': ['', '', ''],
    'no-referrer-when-downgrade': ['url', 'url', ''],
    'origin': ['origin', 'origin', 'origin'],
    'origin-when-cross-origin': ['url', 'origin', 'origin'],
    'same-origin': ['url', '', ''],
    'strict-origin': ['origin', 'origin', ''],
    [usual]: ['url', 'origin', ''],
    'unsafe-url': ['url', 'url', 'url'],
    // Older names, in <meta name="referrer"> only.
    'never': ['', '', ''],
    'default': ['url', 'origin', ''],
    'always': ['url', 'url', 'url'],
    'origin-when-crossorigin': ['url', 'origin', 'origin'],
};

const isPolicy = name => Object.hasOwn(policies, name);

/** The policy in a header's list, a <meta> or an attribute: the last known one; '' for none. */
export function policyIn(text) {
    return text.toLowerCase().split(',').map(each => each.trim()).findLast(isPolicy) ?? '';
}

/** @param {string} policy from policyIn(); the default one if empty */
export function referrerFor(url, documentUrl, policy = '') {
    if (!isWebAddress(documentUrl))
        return '';
    const page = new URL(documentUrl);
    const isDowngrade = page.protocol === 'https:' && new URL(url).protocol === 'http:';
    const [same, other, downgraded] = policies[isPolicy(policy) ? policy : usual];
    const shown = new URL(url).origin === page.origin ? same : isDowngrade ? downgraded : other;
    if (shown !== 'url')
        return shown && `${page.origin}/`;
    page.username = '';
    page.password = '';
    return withoutFragment(page.href);
}

const storageKey = 'referrerPolicies';
const maxKept = 200;

/** The policies in the pages' response headers, which scripts in a page cannot read. */
export class ReferrerPolicies {
    #byUrl = new Map();
    #restored = null;

    /** To be called at once when the script starts. */
    listen() {
        chrome.webRequest.onHeadersReceived.addListener(
            ({ url, responseHeaders }) => void this.#note(withoutFragment(url), responseHeaders),
            { urls: ['http://*/*', 'https://*/*'], types: ['main_frame', 'sub_frame'] }, ['responseHeaders']);
        this.#restored = this.#restore();
    }

    async of(url) {
        await this.#restored;
        return this.#byUrl.get(withoutFragment(url)) ?? '';
    }

    async #restore() {
        this.#byUrl = new Map((await chrome.storage.session.get(storageKey))[storageKey]);
    }

    async #note(url, headers = []) {
        const lists = headers.filter(each => each.name.toLowerCase() === 'referrer-policy');
        const policy = policyIn(lists.map(each => each.value ?? '').join());
        await this.#restored;
        if (policy === (this.#byUrl.get(url) ?? ''))
            return;
        this.#byUrl.delete(url);
        if (policy)
            this.#byUrl.set(url, policy);
        if (this.#byUrl.size > maxKept)
            this.#byUrl.delete(this.#byUrl.keys().next().value);
        await chrome.storage.session.set({ [storageKey]: [...this.#byUrl] }).catch(() => {});
    }
}
