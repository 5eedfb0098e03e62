// Wires the parts of the extension together. Everything the browser reports is listened to from
// the start, since the browser may have woken this script for just that.

import { DownloadReports } from './lib/downloadreports.js';
import { Downloads } from './lib/downloads.js';
import { showMenus } from './lib/menus.js';
import { NativeHost } from './lib/nativehost.js';
import { Observer } from './lib/observer.js';
import { pageLinks } from './lib/pagelinks.js';
import { Pages } from './lib/pages.js';
import { RequestLog } from './lib/requestlog.js';
import { Settings } from './lib/settings.js';
import { Status, inWords } from './lib/status.js';
import { Videos } from './lib/videos.js';

const host = new NativeHost();
const status = new Status();
const settings = new Settings(host);
const requestLog = new RequestLog();
const downloads = new Downloads(host, settings, requestLog);
const downloadReports = new DownloadReports(host);
const pages = new Pages();
const observer = new Observer(host, pages, downloadReports);
const videos = new Videos(host, pages);
let captions = {};

function tell(message) {
    // Nobody listens unless the popup or the options page is open.
    chrome.runtime.sendMessage(message).catch(() => {});
}

// --- the host and the application ----------------------------------------------------------------

host.onConnected = async () => {
    status.hostConnected(host.version);
    downloadReports.announce();
    observer.announce();
    try {
        const answer = await host.ask('ui_strings');
        captions = answer.strings;
        tell({ captions });
        apply(await settings.own());
        await settings.query();
    } catch {
        // The port was closed meanwhile; onDisconnected tells of it.
    }
};
host.onDisconnected = error => {
    settings.forget();
    status.hostDisconnected(error);
};
host.onNotification = message => {
    if (message.type === 'query_settings')
        settings.accept(message);
};
settings.onChanged = current => {
    apply(current.browser);
    tell({ settings: current });
};
downloadReports.onBegun = url => observer.forget(url);
const showOutcome = error => (error ? status.failed(error) : status.succeeded());
downloads.onOutcome = showOutcome;
videos.onOutcome = showOutcome;
status.onChanged = current => tell({ status: current });
pages.onChanged = tabId => tell({ page: { tabId, media: mediaOf(tabId) } });

function apply({ menu, monitor }) {
    showMenus(captions, menu);
    observer.observeEverywhere(monitor.video.enable === true);
}

/** What was found on a tab's page, as the popup shows it; null while that is not observed. */
function mediaOf(tabId) {
    return pages.mediaOn(tabId)?.map(({ requestId, name, kind, size }) => ({ requestId, name, kind, size }))
        ?? null;
}

// --- what the user does --------------------------------------------------------------------------

async function addLinks(tabId, where) {
    const { urls, documentUrl } = await pageLinks(tabId, where);
    await downloads.add(urls, documentUrl, tabId);
}

const menuActions = {
    dllink: (info, tab) => downloads.add([info.linkUrl], info.frameUrl ?? info.pageUrl, tab?.id),
    dlvideo: async (info, tab) => {
        await observer.observe(tab.id);
        await videos.pick(info, tab);
    },
    dlselected: (info, tab) => addLinks(tab.id, { frameId: info.frameId, selectedOnly: true }),
    dlall: (_info, tab) => addLinks(tab.id),
};
chrome.contextMenus.onClicked.addListener((info, tab) => menuActions[info.menuItemId](info, tab));

requestLog.listen();
observer.listen();
downloadReports.listen();
downloads.resumeAll();
chrome.downloads.onCreated.addListener(item => downloads.onBegun(item));

// --- what the popup and the options page ask -----------------------------------------------------

const requests = {
    status: () => status.describe(),
    retry: async () => {
        await host.open().catch(() => {});
        return status.describe();
    },
    captions: () => captions,
    downloadAll: async ({ tabId }) => {
        await addLinks(tabId);
        return status.describe();
    },
    settings: () => settings.current,
    changeSettings: async ({ changes }) => {
        await settings.change(changes);
        return settings.current;
    },
    media: async ({ tabId }) => {
        await observer.observe(tabId);
        return mediaOf(tabId);
    },
    downloadMedia: async ({ tabId, requestId }) => {
        await videos.download(pages.mediaOn(tabId)?.find(each => each.requestId === requestId));
        return status.describe();
    },
};
chrome.runtime.onMessage.addListener((message, _sender, respond) => {
    const handle = requests[message.request];
    if (!handle)
        return false;
    Promise.resolve(handle(message)).then(
        value => respond({ value }),
        error => respond({ problem: inWords(error) }));
    return true;
});

host.open().catch(() => {}); // the status tells of it
