// Runs in every page. In Chromium a download by "Save link as" or by a click with Alt looks the same
// as one by a link with the attribute "download"; only the user's gesture before it differs. Also, a
// modifier key that is held while a link is clicked keeps the download in the browser. The script sends
// whether there was such a gesture, when, and which of three keys were held; nothing else.

const tell = (event, saves) => {
    // Pages can create untrusted events. After an update of the extension, chrome.runtime is gone.
    if (event.isTrusted && chrome.runtime?.id) {
        const { altKey: alt, ctrlKey: ctrl, shiftKey: shift } = event;
        chrome.runtime.sendMessage({ saves, alt, ctrl, shift, time: Date.now() }).catch(() => {});
    }
};
addEventListener('contextmenu', event => tell(event, true), true);
addEventListener('pointerdown', event => tell(event, event.altKey), true);
addEventListener('keydown', event => {
    if (event.key === 'Enter' || event.key === ' ')
        tell(event, event.altKey);
}, true);
