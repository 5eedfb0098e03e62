#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The text without the white space of HTTP (space and tab) at both ends.
std::string_view trimmedHttpSpace(std::string_view text);

std::string asciiLowerCase(std::string_view text);

/**
 * "; name=value; name="quoted value"" (RFC 9110, 5.6.6), names in lower case and in order. Quoted
 * values are returned without quotes and escapes; an unclosed quote ends at the end of the text; an
 * unquoted value ends at the next semicolon, since names with blanks are often sent unquoted. Words
 * without "=" are skipped.
 */
std::vector<std::pair<std::string, std::string>> httpParameters(std::string_view text);
