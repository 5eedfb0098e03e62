// Shows the outcome of downloads on the button's badge and as notifications, by the options.

import { place } from './outcomes.js';
import { inWords } from './status.js';

const helpPage = 'help.html';

export class OutcomeNotifier {
    #preferences;
    #status;

    constructor({ preferences, status }) {
        this.#preferences = preferences;
        this.#status = status;
    }

    /** To be called at once when the script starts. */
    listen() {
        chrome.notifications.onClicked.addListener(id => {
            chrome.notifications.clear(id);
            if (id.startsWith('problem'))
                chrome.tabs.create({ url: chrome.runtime.getURL(helpPage) });
        });
    }

    /** @param {import('./outcomes.js').Outcome} outcome with its error, if any */
    async show(outcome, error) {
        const preferences = await this.#preferences.all();
        const isSuccess = !error && outcome.state === place.application;
        if (isSuccess && preferences['notify.badge'])
            this.#status.flashSuccess();
        if (error && preferences['notify.failures'])
            notify(`problem ${outcome.id}`, withName(outcome.name, inWords(error)));
        else if (isSuccess && preferences['notify.successes'])
            notify(`success ${outcome.id}`, chrome.i18n.getMessage('notifyHandedOver', outcome.name));
    }
}

/** Some sentences name the file themselves. */
function withName(name, sentence) { return sentence.includes(name) ? sentence : `${name}: ${sentence}`; }

function notify(id, message) {
    chrome.notifications.create(id, {
        type: 'basic',
        iconUrl: chrome.runtime.getURL('icons/128.png'),
        title: chrome.i18n.getMessage('extensionName'),
        message,
    });
}
