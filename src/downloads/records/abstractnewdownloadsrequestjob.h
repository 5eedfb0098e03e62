#pragma once

#include "abstractnewdownloadsrequest.h"
#include "qtencodedvariantlist.h"

#include <QVariantHash>

/// A request, and the id under which its outcome is reported.
struct AbstractNewDownloadsRequestJob {
    qint64 id = 0;
    AbstractNewDownloadsRequest request;
    /// The browser continues these downloads if this process ends before they were handed over. Not
    /// part of the message.
    bool isBrowsersOwn = false;
    /// In place of the request's downloads, if there are so many that they are encoded at once.
    QtEncodedVariantList encodedDownloads = {};

    bool operator==(const AbstractNewDownloadsRequestJob &) const = default;
};

/// Only the request: a message about a job has the id separately. Read by
/// toNewDownloadsRequest().
QVariantHash toVariantHash(const AbstractNewDownloadsRequestJob &job);
/// The same with all downloads encoded.
QVariantHash toEncodedVariantHash(const AbstractNewDownloadsRequestJob &job);
