// A real browser, headless, with the project's extension and the built host registered for it.

import { execFileSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import puppeteer from 'puppeteer-core';
import { hostName } from '../../extension/lib/nativehost.js';
import { inFirefoxItself } from './firefoxwindow.mjs';
import { until } from './hostprocess.mjs';
import { ChromiumDialog, FirefoxDialog } from './savedialogs.mjs';
import { builtHost } from './sandbox.mjs';

/** The extension that was assembled by the build, beside the host's folder. */
const extensionFolder = join(dirname(builtHost()), '../webextension');
const extensionManifest = JSON.parse(readFileSync(join(extensionFolder, 'manifest.json')));
/** The file name of the host. */
export const hostProgram = 'wenativehost';
const geckoId = extensionManifest.browser_specific_settings.gecko.id;
/** The UUID of the extension's pages in Firefox, which would otherwise be random. */
const firefoxPagesId = '8c5b1c3e-5d1f-4d0c-9a64-6b1d6f0e2a37';

/** Chromium's id of an extension: the start of its key's hash, in the letters a to p. */
function chromiumId() {
    const digest = createHash('sha256').update(Buffer.from(extensionManifest.key, 'base64')).digest('hex');
    return digest.slice(0, 32).replace(/./g, digit => 'abcdefghijklmnop'[parseInt(digit, 16)]);
}

/** Registers the host as a user does, once the browser's folder exists. name: one of browserNames. */
function registerHost(profile, sandbox, name) {
    mkdirSync(profile, { recursive: true });
    runRegistration(sandbox, 'register', name, '--host', sandbox.host);
}

/** Removes the host's registration. name: one of browserNames. */
export function unregisterHost(sandbox, name) { runRegistration(sandbox, 'unregister', name); }

function runRegistration(sandbox, ...words) {
    execFileSync(join(dirname(builtHost()), 'kovalo-host'), words, { env: sandbox.environment() });
}

const launchers = {
    async chromium(sandbox, environment, { asksWhere, screen }) {
        const userDataDir = join(sandbox.home, '.config/chromium');
        if (!existsSync(userDataDir)) {
            mkdirSync(join(userDataDir, 'Default'), { recursive: true });
            writeFileSync(join(userDataDir, 'Default/Preferences'), JSON.stringify({
                download: { default_directory: sandbox.downloads, prompt_for_download: asksWhere },
            }));
        }
        registerHost(userDataDir, sandbox, 'chromium');
        const browser = await puppeteer.launch({
            executablePath: '/usr/bin/chromium',
            enableExtensions: true,
            headless: !screen,
            pipe: true,
            userDataDir,
            env: environment,
            args: ['--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-quic',
                   '--disable-background-networking', '--disable-component-update',
                   '--disable-sync'],
        });
        return {
            browser,
            pagesOrigin: `chrome-extension://${chromiumId()}`,
            ExtensionPage: ChromiumExtensionPage,
            chooseMenu: chooseMenuInChromium,
            dialog: new ChromiumDialog(screen),
            stopScript: async () => (await (await workerOf(browser)).worker()).close(),
            inScript: async (_page, fn, ...args) => {
                const worker = await (await workerOf(browser)).worker();
                return worker.evaluate(fn, await worker.evaluateHandle(() => globalThis), ...args);
            },
            actInList: async (name, act) => {
                const page = await browser.newPage();
                await page.goto('chrome://downloads');
                const row = await page.waitForSelector(`>>> downloads-item >>> [title*="${name}"]`);
                await row.evaluate((each, id) => each.getRootNode().getElementById(id).click(), act);
                await page.close();
            },
            withholdSites: () => configureInChromium(browser, { hostAccess: 'ON_CLICK' }),
            // This reloads the extension.
            allowPrivately: () => configureInChromium(browser, { incognitoAccess: true }, ({ state, incognitoAccess }) =>
                state === 'ENABLED' && incognitoAccess.isActive),
        };
    },

    async firefox(sandbox, environment, { asksWhere, screen }) {
        const userDataDir = join(sandbox.home, 'firefox');
        mkdirSync(userDataDir, { recursive: true });
        registerHost(join(sandbox.home, '.mozilla'), sandbox, 'firefox');
        const browser = await puppeteer.launch({
            browser: 'firefox',
            executablePath: '/usr/bin/firefox-esr',
            args: ['--remote-allow-system-access'], // required for extension pages
            headless: !screen,
            userDataDir,
            env: environment,
            extraPrefsFirefox: {
                'browser.download.dir': sandbox.downloads,
                'browser.download.folderList': 2,
                'browser.download.useDownloadDir': !asksWhere,
                'network.http.phishy-userpass-length': 255, // no prompt for URLs with a user name
                'extensions.webextensions.uuids': JSON.stringify({ [geckoId]: firefoxPagesId }),
            },
        });
        return {
            browser,
            pagesOrigin: `moz-extension://${firefoxPagesId}`,
            ExtensionPage: FirefoxExtensionPage,
            chooseMenu: chooseMenuInFirefox,
            dialog: new FirefoxDialog(browser),
            stopScript: () => inFirefoxItself(browser, async id => {
                // eslint-disable-next-line no-undef
                await WebExtensionPolicy.getByID(id).extension.terminateBackground({ disableResetIdleForTest: true });
            }, geckoId),
            inScript: (page, fn, ...args) => page.evaluate(
                `(...args) => (${fn})(chrome.extension.getBackgroundPage(), ...args)`, ...args),
            actInList: (name, act) => inFirefoxItself(browser, async text => {
                const [wanted, method] = text.split(' ');
                // eslint-disable-next-line no-undef
                const all = await (await Downloads.getList(Downloads.ALL)).getAll();
                all.find(each => each.source.url.includes(wanted))[method]().catch(() => {});
            }, `${name} ${act === 'retry' ? 'start' : act}`),
            withholdSites: async () => {
                const page = await FirefoxExtensionPage.open(browser, `moz-extension://${firefoxPagesId}/options.html`);
                await page.evaluate(origins => chrome.permissions.remove({ origins }), extensionManifest.host_permissions);
            },
            /* eslint-disable no-undef */
            allowPrivately: () => inFirefoxItself(browser, async id => {
                const { ExtensionPermissions } = ChromeUtils.importESModule('resource://gre/modules/ExtensionPermissions.sys.mjs');
                const { AddonManager } = ChromeUtils.importESModule('resource://gre/modules/AddonManager.sys.mjs');
                await ExtensionPermissions.add(id, { permissions: ['internal:privateBrowsingAllowed'], origins: [] });
                await (await AddonManager.getAddonByID(id)).reload();
            }, geckoId),
            /* eslint-enable no-undef */
        };
    },
};

export const browserNames = Object.keys(launchers);

/** A page of the extension in Chromium: code evaluated there has the extension's rights. */
class ChromiumExtensionPage {
    static async open(browser, address) {
        const page = await browser.newPage();
        await page.goto(address);
        return new ChromiumExtensionPage(page);
    }

    constructor(page) { this.page = page; }

    /** Runs a function in the page; its arguments and its (awaited) result are passed as JSON. */
    evaluate(fn, ...args) { return this.page.evaluate(fn, ...args); }
}

/**
 * The same in Firefox, where puppeteer loses a tab that moves to the extension process; WebDriver BiDi
 * still reaches it.
 */
class FirefoxExtensionPage {
    static async open(browser, address) {
        const page = await browser.newPage();
        const self = new FirefoxExtensionPage(browser.connection, page.mainFrame()._id);
        await self.#send('browsingContext.navigate',
                         { context: self.context, url: address, wait: 'none' });
        await until(async () => {
            const state = () => [location.href, document.readyState].join();
            return await self.evaluate(state).catch(() => '') === `${address},complete`;
        }, `${address} to load`);
        return self;
    }

    constructor(connection, context) {
        this.connection = connection;
        this.context = context;
    }

    async evaluate(fn, ...args) {
        const result = await this.#send('script.callFunction', {
            target: { context: this.context },
            functionDeclaration:
                `async text => JSON.stringify(await (${fn})(...JSON.parse(text)) ?? null)`,
            arguments: [{ type: 'string', value: JSON.stringify(args) }],
            awaitPromise: true,
        });
        if (result.type !== 'success')
            throw new Error(result.exceptionDetails.text);
        return JSON.parse(result.result.value);
    }

    async #send(method, params) { return (await this.connection.send(method, params)).result; }
}

/** Changes the extension's configuration on chrome://extensions. isDone: takes the resulting state. */
async function configureInChromium(browser, changes, isDone = () => true) {
    const page = await browser.newPage();
    await page.goto('chrome://extensions');
    const extensionId = chromiumId();
    await page.evaluate(async update => {
        // Without it, Chromium disables an unpacked extension that is reloaded.
        await chrome.developerPrivate.updateProfileConfiguration({ inDeveloperMode: true });
        await chrome.developerPrivate.updateExtensionConfiguration(update);
    }, { extensionId, ...changes });
    await until(async () => isDone(await page.evaluate(id => chrome.developerPrivate.getExtensionInfo(id), extensionId)),
                'Chromium to have changed the extension');
    await page.close();
}

/** The extension's background script in Chromium. */
function workerOf(browser) {
    return browser.waitForTarget(
        each => each.type() === 'service_worker' && each.url().startsWith(`chrome-extension://${chromiumId()}/`));
}

/**
 * Headless Chromium shows no context menu, so the extension gets the event that a click would send.
 */
async function chooseMenuInChromium(browser, page, element, entry) {
    const info = await element.evaluate(clicked => ({
        pageUrl: location.href,
        frameUrl: clicked.localName === 'iframe' ? clicked.contentWindow.location.href : undefined,
        linkUrl: clicked.href,
        srcUrl: clicked.currentSrc,
    }));
    const worker = await (await workerOf(browser)).worker();
    await worker.evaluate(async click => {
        const tab = (await chrome.tabs.query({})).find(each => each.url === click.pageUrl);
        const frames = await chrome.webNavigation.getAllFrames({ tabId: tab.id });
        const { frameId } = frames.find(each => each.url === (click.frameUrl ?? click.pageUrl));
        chrome.contextMenus.onClicked.dispatch({ ...click, frameId }, tab);
    }, { ...info, menuItemId: entry });
}

/** Opens the menu with a right click, and chooses an entry. */
async function chooseMenuInFirefox({ connection }, _page, element, entry) {
    await element.click({ button: 'right' });
    const isShown = await inFirefoxItself({ connection }, async id => {
        const menu = document.getElementById('contentAreaContextMenu');
        while (menu.state !== 'open')
            await new Promise(resolve => { setTimeout(resolve, 10); });
        const item = menu.querySelector(`[id^="kovalo_"][id$="_${id}"]`);
        item?.doCommand();
        menu.hidePopup();
        return Boolean(item);
    }, entry);
    if (!isShown)
        throw new Error(`the menu shows no ${entry}`);
}

/** A running browser with the extension in it. */
export class ExtendedBrowser {
    /**
     * Keeps the profile of an earlier launch in the same sandbox.
     * @param {string} name one of browserNames
     * @param {object} options screen: the one for its windows; asksWhere: whether it asks the user where to
     *     save a download; privately: whether the extension has access to private windows;
     *     language: Chromium's
     */
    static async launch(name, sandbox, { screen, asksWhere = false, privately = false, language = 'en' } = {}) {
        const environment = sandbox.environment({ LANG: `${language}.UTF-8`, LANGUAGE: language, ...screen && { DISPLAY: screen.display } });
        const started = await launchers[name](sandbox, environment, { screen, asksWhere });
        const self = new ExtendedBrowser(sandbox, started);
        try {
            await self.browser.installExtension(extensionFolder);
            if (privately)
                await started.allowPrivately();
        } catch (error) {
            await self.close();
            throw error;
        }
        return self;
    }

    #pages;
    #chooseMenu;

    constructor(sandbox, { browser, pagesOrigin, ExtensionPage, chooseMenu, dialog, stopScript, inScript, actInList, withholdSites }) {
        this.sandbox = sandbox;
        this.browser = browser;
        this.#pages = { origin: pagesOrigin, Page: ExtensionPage };
        this.#chooseMenu = chooseMenu;
        /** The browser's save dialogs. Chromium needs a screen for them. */
        this.dialog = dialog;
        /** Ends the extension's background script, as the browser does when it is idle. */
        this.stopScript = stopScript;
        /** Runs a function in the background script: inScript(page, fn, ...args), with a page of the extension. The
         *  first argument of fn is the script's global object. */
        this.inScript = inScript;
        /** Acts on a download in the browser's own list: actInList(name, 'cancel' or 'retry'). */
        this.actInList = actInList;
        /** Revokes the extension's access to pages, as the user can on the browser's own page. */
        this.withholdSites = withholdSites;
    }

    /** Right-clicks an element of a page and chooses an entry of the extension, by its id. */
    chooseMenu(page, element, entry) { return this.#chooseMenu(this.browser, page, element, entry); }

    /** The URL of a file of the extension. */
    address(path) { return `${this.#pages.origin}/${path}`; }

    openExtensionPage(path) { return this.#pages.Page.open(this.browser, this.address(path)); }

    /** Opens a port to another host, in a page of the extension. */
    async openPort(page) {
        const before = this.sandbox.running(hostProgram);
        const port = await HostPort.open(page);
        let started = [];
        await until(() => {
            started = this.sandbox.running(hostProgram).filter(pid => !before.includes(pid));
            return started.length > 0;
        }, 'the browser to start a host');
        port.hostPid = started[0];
        port.hostEnded = () => until(() => !this.sandbox.running(hostProgram).includes(port.hostPid),
                                     `process ${port.hostPid} to end`);
        return port;
    }

    version() { return this.browser.version(); }

    async close() { await this.browser.close(); }
}

/** A native-messaging port in a page of the extension; messages go through the browser itself. */
class HostPort {
    static #count = 0;

    static async open(page) {
        const self = new HostPort(page, `port${++HostPort.#count}`);
        await page.evaluate((name, host) => {
            const port = chrome.runtime.connectNative(host);
            const entry = { port, messages: [], waiting: [], disconnected: false };
            port.onMessage.addListener(message => {
                const waiting = entry.waiting.shift();
                if (waiting)
                    waiting(message);
                else
                    entry.messages.push(message);
            });
            port.onDisconnect.addListener(() => {
                entry.disconnected = true;
                for (const waiting of entry.waiting.splice(0))
                    waiting({ error: 'the port was closed' });
            });
            globalThis[name] = entry;
        }, self.name, hostName);
        return self;
    }

    constructor(page, name) {
        this.page = page;
        this.name = name;
    }

    post(task) {
        return this.page.evaluate((name, message) => {
            globalThis[name].port.postMessage(message);
        }, this.name, task);
    }

    /** Sends a task and resolves with the next message. */
    ask(task) {
        return this.page.evaluate((name, message) => {
            const entry = globalThis[name];
            const next = entry.messages.length > 0
                ? Promise.resolve(entry.messages.shift())
                : new Promise(resolve => { entry.waiting.push(resolve); });
            entry.port.postMessage(message);
            return next;
        }, this.name, task);
    }

    /** Whether the port has been disconnected. */
    isDisconnected() { return this.page.evaluate(name => globalThis[name].disconnected, this.name); }

    close() { return this.page.evaluate(name => globalThis[name].port.disconnect(), this.name); }
}
