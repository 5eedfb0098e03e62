// By default Firefox scans for system-wide extensions (scope 8) only in new profiles and after its own
// updates. This makes it scan at each start.
pref("extensions.startupScanScopes", 8);
