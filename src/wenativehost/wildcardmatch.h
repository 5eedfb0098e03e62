#pragma once

/**
 * Whether the whole text matches the mask, in which "*" matches any run of characters and "?" any
 * single one. The result is null if it does not match; otherwise it points into str.
 *
 * A "*" at the mask's end matches at least one character: neither does "*" match an empty text, nor
 * "a*" the text "a". Elsewhere it may match none. The cost is at most the product of both lengths.
 * A null pointer never matches.
 */
const char *strcmp_m(const char *str, const char *mask);

/// The same, ignoring the case of ASCII letters, in every locale.
const char *strcmpi_m(const char *str, const char *mask);
