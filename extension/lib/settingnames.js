// The options that a page of the extension may change, by their paths in the record's "browser".

const names = new Set([
    'menu.dllink', 'menu.dlselected', 'menu.dlall', 'menu.dlvideo',
    'monitor.enable', 'monitor.allowDownload', 'monitor.skipSmallerThan', 'monitor.skipExtensions',
    'monitor.skipServersEnabled', 'monitor.skipServers', 'monitor.skipIfKeyPressed',
    'monitor.video.enable',
]);

export function isSettingName(name) { return names.has(name); }
