// Wires the parts of the extension together. All listeners are added synchronously at the start,
// since the browser may have started this script for one of these events.

import { gatherFacts } from './lib/diagnosis.js';
import { DownloadReports } from './lib/downloadreports.js';
import { Downloads } from './lib/downloads.js';
import { FoundMedia } from './lib/foundmedia.js';
import { Gestures } from './lib/gestures.js';
import { Handovers } from './lib/handovers.js';
import { errorOf } from './lib/hostanswers.js';
import { HostError } from './lib/hosterror.js';
import { Keeping } from './lib/keeping.js';
import { LinkLists } from './lib/linklists.js';
import { showMenus } from './lib/menus.js';
import { NativeHost } from './lib/nativehost.js';
import { Observer } from './lib/observer.js';
import { Outcomes, place } from './lib/outcomes.js';
import { pageLink, pageLinks } from './lib/pagelinks.js';
import { PageRequests } from './lib/pagerequests.js';
import { Pages } from './lib/pages.js';
import { Preferences, isPreference } from './lib/preferences.js';
import { ReferrerPolicies } from './lib/referrer.js';
import { RequestLog } from './lib/requestlog.js';
import { RequestNotifications } from './lib/requestnotifications.js';
import { Settings } from './lib/settings.js';
import { OutcomeNotifier } from './lib/outcomenotifier.js';
import { followSiteAccess } from './lib/siteaccess.js';
import { Status, inWords } from './lib/status.js';
import { Videos } from './lib/videos.js';

const host = new NativeHost();
const status = new Status();
const settings = new Settings(host);
const requests = new RequestLog();
const gestures = new Gestures();
const policies = new ReferrerPolicies();
const handovers = new Handovers();
const outcomes = new Outcomes();
const preferences = new Preferences();
const keeping = new Keeping({ preferences, settings, gestures });
const outcomeNotifier = new OutcomeNotifier({ preferences, status });
const linkLists = new LinkLists();
const downloads = new Downloads({ host, settings, requests, gestures, keeping, policies, handovers, outcomes });
const downloadReports = new DownloadReports(host);
const notifications = new RequestNotifications(host);
const pages = new Pages(notifications);
const pageRequests = new PageRequests(notifications, pages);
const foundMedia = new FoundMedia(notifications, pages, pageRequests);
const observer = new Observer(notifications, pages, pageRequests, foundMedia, downloadReports);
const videos = new Videos(host);
let captions = {};

/** More selected links than this are confirmed by the user. */
const maxAtOnce = 10;
const helpPage = 'help.html';

function tell(message) {
    // There is no receiver unless the popup or the options page is open.
    chrome.runtime.sendMessage(message).catch(() => {});
}

// --- the host and the application ----------------------------------------------------------------

host.onConnected = async () => {
    status.hostConnected(host.version);
    observer.announce();
    try {
        // The last known captions are used until the settings arrive, which may take a while.
        apply(await settings.own());
        await settings.query();
    } catch {
        // The port was closed meanwhile; onDisconnected reports that.
    }
};
host.onDisconnected = error => {
    settings.forget();
    downloads.setCatching(true);
    status.hostDisconnected(error);
};
host.onNotification = message => {
    if (message.type === 'query_settings')
        settings.accept(message);
    else if (message.type === 'page_media')
        foundMedia.accept(message.page_media);
    else if (message.type === 'ui_strings')
        showCaptions(message.strings);
    else if (message.type === 'settings_store')
        settings.acceptStore(message);
    else if (message.type === 'lost_download')
        outcomes.report(message.result, place.lost, errorOf(message));
};
settings.onChanged = current => {
    apply(current.browser);
    downloads.setCatching(current.browser.monitor.enable !== false);
    tell({ settings: current });
};
// The language is one of the application's settings.
settings.onReceived = () => host.ask('ui_strings').then(answer => showCaptions(answer.strings), () => {});
settings.onStoreChanged = store => tell({ store });
const showOutcome = error => (error ? status.failed(error) : status.succeeded());
outcomes.onReported = (outcome, error) => {
    showOutcome(error);
    outcomeNotifier.show(outcome, error);
};
outcomes.onListed = () => outcomes.list().then(all => tell({ outcomes: all.reverse() }));
keeping.onChanged = state => {
    status.keeping(state.next);
    tell({ keeping: state });
};
preferences.onChanged = values => {
    tell({ preferences: values });
    keeping.describe().then(state => tell({ keeping: state }));
};
videos.onOutcome = showOutcome;
status.onChanged = current => tell({ status: current });
pages.onChanged = tabId => tell({ page: { tabId, media: mediaOf(tabId) } });

async function showCaptions(strings) {
    captions = strings;
    apply(settings.current?.browser ?? await settings.own());
}

function apply({ menu, monitor }) {
    showMenus(captions, menu);
    observer.observeEverywhere(monitor.video.enable === true);
}

/** The media of a tab's page, as the popup shows it; null while the page is not observed. */
function mediaOf(tabId) {
    return foundMedia.on(tabId)?.map(({ requestId, title, kind, size, quality }) =>
        ({ requestId, title, kind, size: Number(size), quality })) ?? null;
}

// --- what the user does --------------------------------------------------------------------------

/** Many links, or all links of a page, are shown on a page of the extension for the user to choose. */
async function chooseLinks(tab, where) {
    const links = await pageLinks(tab.id, where);
    if (where && links.length <= maxAtOnce)
        await downloads.add(links, tab);
    else
        await linkLists.open(links, tab);
}

const menuActions = {
    dllink: async ({ linkUrl, frameId, frameUrl, pageUrl }, tab) =>
        downloads.add([await pageLink(tab.id, linkUrl, frameId, frameUrl ?? pageUrl)], tab),
    dlvideo: async (info, tab) => {
        await host.open().catch(() => {}); // a new host first gets the page's media
        await observer.observe(tab.id);
        await videos.pick(info, tab);
    },
    dlselected: (info, tab) => chooseLinks(tab, { frameId: info.frameId, selectedOnly: true }),
    dlall: (_info, tab) => chooseLinks(tab),
};
chrome.contextMenus.onClicked.addListener((info, tab) => menuActions[info.menuItemId](info, tab));

downloads.setCatching(true);
policies.listen();
observer.listen();
followSiteAccess(state => status.siteAccess(state));
downloads.recover();
outcomeNotifier.listen();
chrome.commands?.onCommand.addListener(name => name === 'keep-next' && keeping.toggleNext());
chrome.runtime.onInstalled.addListener(({ reason }) => {
    if (reason === 'install')
        chrome.tabs.create({ url: chrome.runtime.getURL(helpPage) });
});

// --- requests of the extension's pages -----------------------------------------------------------

const answers = {
    status: () => status.describe(),
    retry: async () => {
        await host.openAnew().catch(() => {});
        return status.describe();
    },
    dismissProblem: () => {
        status.succeeded();
        return status.describe();
    },
    chooseLinks: async ({ tabId }) => {
        await chooseLinks(await chrome.tabs.get(tabId));
        return true;
    },
    links: ({ key }) => linkLists.get(key),
    downloadLinks: async ({ key, indexes }) => {
        const list = await linkLists.get(key);
        if (!list)
            throw new HostError('linksGone');
        const state = await downloads.add(indexes.map(index => list.links[index]), list.tab);
        return { ...status.describe(), isDeclined: state === place.nowhere };
    },
    settings: () => settings.current,
    store: () => settings.store,
    preferences: () => preferences.all(),
    changeSettings: async ({ changes }) => {
        await settings.change(changes);
        return settings.current;
    },
    changePreferences: async ({ changes }) => {
        const unknown = Object.keys(changes).find(each => !isPreference(each));
        if (unknown !== undefined)
            throw new HostError('problemOptionUnknown', unknown);
        await preferences.change(changes);
        return preferences.all();
    },
    keeping: () => keeping.describe(),
    keepNext: async ({ next }) => {
        await keeping.keepNext(next === true);
        return keeping.describe();
    },
    site: ({ url }) => keeping.site(url),
    leaveSite: ({ url, leave }) => keeping.leaveSite(url, leave),
    outcomes: async () => (await outcomes.list()).reverse(),
    dismissOutcome: async ({ id }) => {
        await outcomes.dismiss(id);
        return (await outcomes.list()).reverse();
    },
    check: () => facts(),
    checkAgain: async () => {
        await host.openAnew().catch(() => {});
        return facts();
    },
    testDownload: async () => facts(await downloads.tryOne()),
    media: async ({ tabId }) => {
        await observer.observe(tabId);
        return mediaOf(tabId);
    },
    downloadMedia: async ({ tabId, requestId }) => {
        await videos.download(foundMedia.on(tabId)?.find(each => each.requestId === requestId), pages.get(tabId)?.url);
        return status.describe();
    },
};
/** @param {Error|null} [test] the result of a test download: null on success */
const facts = test => gatherFacts({ host, status, settings, outcomes }, test);

/** Only pages of the extension may send requests; content scripts send gestures and nothing else. */
const isOwnPage = ({ id, url }) => id === chrome.runtime.id && url?.startsWith(chrome.runtime.getURL(''));

chrome.runtime.onMessage.addListener((message, sender, respond) => {
    if (gestures.take(message, sender) || !isOwnPage(sender) || !Object.hasOwn(answers, message?.request))
        return false;
    Promise.resolve(answers[message.request](message)).then(
        value => respond({ value }),
        error => respond({ problem: inWords(error) }));
    return true;
});

// Starts this script with the browser, so that interrupted hand-overs are completed at once.
chrome.runtime.onStartup.addListener(() => {});
chrome.alarms.onAlarm.addListener(() => {});

keeping.describe().then(({ next }) => status.keeping(next));
host.open().catch(() => {}); // the status shows the error
