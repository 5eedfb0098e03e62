// Runs in every page. In Chromium a download by "Save link as" or by a click with Alt looks the same
// as one by a link that has the attribute "download"; what the user did before tells them apart. That
// one bit is all that leaves the page. Firefox has other signs, and needs none of this.

if (!navigator.userAgent.includes('Firefox/')) {
    const tell = (event, savesItself) => {
        // Pages can make events of their own. A script that outlived its extension has nobody to tell.
        if (event.isTrusted && chrome.runtime?.id)
            chrome.runtime.sendMessage(savesItself).catch(() => {});
    };
    addEventListener('contextmenu', event => tell(event, true), true);
    addEventListener('pointerdown', event => tell(event, event.altKey), true);
    addEventListener('keydown', event => {
        if (event.key === 'Enter' || event.key === ' ')
            tell(event, event.altKey);
    }, true);
}
