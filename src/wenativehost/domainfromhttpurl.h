#pragma once

#include <string>

/// The host name in a URL: the text after its last "//" that is followed by a character other than
/// "/", "?", "#" and ":", up to the next of these. Empty when there is none.
///
/// The same as the first group of the regular expression "^.*//([^/?#:]+).*$" on the whole URL,
/// where
/// "." does not match a line break, but linear in the URL's length.
std::string domainFromHttpUrl(const std::string &url);
