#pragma once

#include <QString>
#include <QUrl>

/// What is asked of a URL before it is downloaded. Costs are linear in its length.

/// A valid URL that has a scheme.
bool isValid(const QUrl &url);
/// Of the scheme "http" or "https", which QUrl has in lower case however it was written.
bool isValidHttpUrl(const QUrl &url);
bool isValidHttpsUrl(const QUrl &url);

/// Whether the kind of downloader named can fetch a URL of this scheme.
bool isDownloadableByQt(const QUrl &url);
bool isDownloadableByWww(const QUrl &url);
bool isDownloadableByCurl(const QUrl &url);

/// The URL with the query added behind the one that it has, if any.
QUrl appendQuery(const QUrl &url, const QString &query, QUrl::ParsingMode mode);

/// Whether the URL's host is rootHost or below it, ignoring case: "a.example.org" is below
/// "example.org", "badexample.org" is not. rootHost is spelt as QUrl::host() spells it, which
/// decodes international names only where it holds the domain's registry trustworthy.
bool isRootHostEqualTo(const QUrl &url, const QString &rootHost);
