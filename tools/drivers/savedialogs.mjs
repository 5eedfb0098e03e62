// The browsers' own save dialogs.

import { inFirefoxItself } from './firefoxwindow.mjs';
import { until } from './hostprocess.mjs';

/** In milliseconds: the time after which an action without an effect is repeated. */
const actTimeoutMs = 3000;

/** Repeats an action until it has an effect, where no event tells when it can have one. */
function actUntil(act, isDone, what) {
    return until(async () => {
        await act();
        return until(isDone, what, actTimeoutMs).then(() => true, () => false);
    }, what);
}

/** Chromium's save dialog, on a screen. */
export class ChromiumDialog {
    static #title = 'Save File';
    static #menuKeys = { link: 'k', image: 'v' };
    /** The position of the PDF viewer's button in the default viewport; automation has no access to the viewer. */
    static #viewerButton = [695, 26];
    /** The position on the screen of the button that allows multiple downloads. Chromium ignores early clicks. */
    static #allowButton = [397, 232];

    constructor(screen) { this.screen = screen; }

    prepare() {}

    /** what: "link" or "image" for such an element, "page", or "viewer" for the PDF viewer's button. */
    async ask(what, page, element) {
        await page.bringToFront();
        this.screen.focus(this.screen.window('Chromium'));
        if (what === 'page') {
            await actUntil(() => this.screen.press('ctrl+s'), () => this.isOpen(), 'the dialog');
        } else if (what === 'viewer') {
            await actUntil(() => page.mouse.click(...ChromiumDialog.#viewerButton), () => this.isOpen(), 'the PDF viewer to ask');
        } else {
            await element.click({ button: 'right' });
            // There is no event for an open menu, so keys are sent until it reacts.
            await until(() => {
                if (this.isOpen())
                    return true;
                this.screen.press(ChromiumDialog.#menuKeys[what]);
                return false;
            }, 'the dialog');
        }
        await until(() => this.isOpen(), 'the dialog');
    }

    isOpen() { return Boolean(this.screen.window(ChromiumDialog.#title)); }

    /** Allows a page multiple downloads. isDone: whether the page has made them. */
    allowSeveral(isDone) {
        return actUntil(() => this.screen.click(...ChromiumDialog.#allowButton), isDone, 'the page to download several files');
    }

    async accept() {
        // One that has just opened may ignore keys.
        await actUntil(() => {
            const dialog = this.screen.window(ChromiumDialog.#title);
            if (dialog) {
                this.screen.focus(dialog);
                this.screen.press('alt+s');
            }
        }, () => !this.isOpen(), 'the dialog to close');
    }
}

/** The same in Firefox, where automation has no native dialogs: a mock replaces the file picker. */
export class FirefoxDialog {
    static #commands = { link: 'context-savelink', image: 'context-saveimage', page: 'Browser:SavePage' };

    constructor(browser) { this.browser = browser; }

    /** folder: where the user saves files. */
    prepare(folder) {
        /* eslint-disable no-undef */
        return inFirefoxItself(this.browser, path => {
            globalThis.openDialog = null;
            const picker = {
                init() {}, appendFilters() {}, appendFilter() {}, filterIndex: 0, defaultString: '',
                get file() {
                    const file = Cc['@mozilla.org/file/local;1'].createInstance(Ci.nsIFile);
                    file.initWithPath(`${path}/${this.defaultString}`);
                    return file;
                },
                get fileURL() { return Services.io.newFileURI(this.file); },
                open(callback) { globalThis.openDialog = () => callback.done(Ci.nsIFilePicker.returnOK); },
                QueryInterface: ChromeUtils.generateQI(['nsIFilePicker']),
            };
            Components.manager.QueryInterface(Ci.nsIComponentRegistrar).registerFactory(
                Components.ID('{8c5b1c3e-5d1f-4d0c-9a64-6b1d6f0e2a38}'), '', '@mozilla.org/filepicker;1', {
                    createInstance: () => picker,
                    QueryInterface: ChromeUtils.generateQI(['nsIFactory']),
                });
        }, folder);
        /* eslint-enable no-undef */
    }

    async ask(what, page, element) {
        await page.bringToFront();
        if (what === 'viewer') {
            await page.click('#downloadButton');
            await until(() => this.isOpen(), 'the PDF viewer to ask');
            return;
        }
        if (what !== 'page')
            await element.click({ button: 'right' });
        await inFirefoxItself(this.browser, async id => {
            const menu = document.getElementById('contentAreaContextMenu');
            const command = document.getElementById(id);
            if (!menu.contains(command)) {
                command.doCommand();
                return;
            }
            while (menu.state !== 'open')
                await new Promise(resolve => { setTimeout(resolve, 10); });
            menu.activateItem(command);
        }, FirefoxDialog.#commands[what]);
        await until(() => this.isOpen(), 'the dialog');
    }

    isOpen() { return inFirefoxItself(this.browser, () => Boolean(globalThis.openDialog)); }

    /** Firefox has no such prompt. */
    allowSeveral(isDone) { return until(isDone, 'the page to download several files'); }

    accept() {
        return inFirefoxItself(this.browser, () => {
            globalThis.openDialog();
            globalThis.openDialog = null;
        });
    }
}
