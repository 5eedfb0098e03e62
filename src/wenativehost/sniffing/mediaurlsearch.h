#pragma once

#include <QString>
#include <QUrl>

#include <string>
#include <vector>

/**
 * The URLs with a media file name in the parameters of a page's player, such as its variables
 * ("file=movie.mp4&image=…") or the URL of its program.
 *
 * Percent-encoded values are decoded, and searched again, to a depth of three, since URLs may be
 * nested. Relative URLs are resolved against the page. Each is returned once, in the order found.
 * Linear in the length of the text.
 */
std::vector<QUrl> findMediaUrls(const std::string &text, const QUrl &pageUrl);
