#pragma once

#include <QString>
#include <QUrl>

/// Checks of a URL before it is downloaded. Linear in its length.

/// A valid URL that has a scheme.
bool isValid(const QUrl &url);
/// Whether the scheme is "http" or "https"; QUrl always has it in lower case.
bool isValidHttpUrl(const QUrl &url);
bool isValidHttpsUrl(const QUrl &url);

/// Whether that kind of downloader supports the URL's scheme.
bool isDownloadableByQt(const QUrl &url);
bool isDownloadableByWww(const QUrl &url);
bool isDownloadableByCurl(const QUrl &url);

/// The URL with the query appended to its own, if any.
QUrl appendQuery(const QUrl &url, const QString &query, QUrl::ParsingMode mode);

/// Whether the URL's host is rootHost or below it, ignoring case: "a.example.org" is below
/// "example.org", "badexample.org" is not. rootHost must be in the form of QUrl::host(), which
/// decodes international names only for registries that Qt trusts.
bool isRootHostEqualTo(const QUrl &url, const QString &rootHost);
