#pragma once

#include <QString>
#include <QUrl>

#include <string>
#include <vector>

/**
 * The URLs with a media file name in the texts that a player on a page was given, such as its
 * variables ("file=movie.mp4&image=…") or the address of its program.
 *
 * Percent-encoded values are decoded, and decoded values searched again, to a depth of three, since
 * addresses are passed inside addresses. Relative ones are taken relative to the page. Each is
 * returned once, in the order found. Linear in the length of the text.
 */
std::vector<QUrl> findMediaUrls(const std::string &text, const QUrl &pageUrl);
