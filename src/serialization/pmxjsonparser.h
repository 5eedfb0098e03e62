#pragma once

#include <picojson.h>

#include <memory>
#include <string_view>

/**
 * Parses the first JSON value of a text; what follows it is not looked at. Null when the text is
 * malformed or nested more than 100 levels deep. A number too large for a double becomes null.
 */
std::shared_ptr<const picojson::value> pmxParseJson(std::string_view text);
