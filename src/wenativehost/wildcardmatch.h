#pragma once

/**
 * Whether the whole text matches the mask, in which "*" stands for any run of characters and "?"
 * for any one. The result is null when it does not, and otherwise points into str.
 *
 * A "*" at the mask's end stands for at least one character: neither "*" matches an empty text nor
 * "a*" the text "a". Elsewhere it may stand for none. The cost is at most the product of both
 * lengths. Nothing matches a null pointer.
 */
const char *strcmp_m(const char *str, const char *mask);

/// The same whatever the case of ASCII letters, in every locale.
const char *strcmpi_m(const char *str, const char *mask);
