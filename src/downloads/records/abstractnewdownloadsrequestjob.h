#pragma once

#include "abstractnewdownloadsrequest.h"
#include "qtencodedvariantlist.h"

#include <QVariantHash>

/// A request and the number under which its outcome is told.
struct AbstractNewDownloadsRequestJob {
    qint64 id = 0;
    AbstractNewDownloadsRequest request;
    /// The browser makes these downloads by itself when this process ends before they were handed
    /// over. Not part of the message.
    bool isBrowsersOwn = false;
    /// In place of the request's downloads, when they are so many that nobody looks at them one by
    /// one any more.
    QtEncodedVariantList encodedDownloads = {};

    bool operator==(const AbstractNewDownloadsRequestJob &) const = default;
};

/// The request alone: a message about a job carries the id beside it. Read by
/// toNewDownloadsRequest().
QVariantHash toVariantHash(const AbstractNewDownloadsRequestJob &job);
/// The same with all downloads encoded.
QVariantHash toEncodedVariantHash(const AbstractNewDownloadsRequestJob &job);
