// Firefox looks for extensions that were installed for everybody (8) only in new profiles and after its
// own updates, unless it is told to look whenever it starts.
pref("extensions.startupScanScopes", 8);
