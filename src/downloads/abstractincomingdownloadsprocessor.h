#pragma once

#include "abstractdownloadenums.h"
#include "abstractnewdownloadsrequestjob.h"

#include <QObject>
#include <QString>

/// Takes downloads from outside the application, and reports their outcome.
class AbstractIncomingDownloadsProcessor : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// An empty job with an id of its own.
    virtual AbstractNewDownloadsRequestJob createJob() = 0;
    /// Starts a job made by createJob(). finished() reports its outcome, once, now or later.
    virtual void process(const AbstractNewDownloadsRequestJob &job) = 0;

Q_SIGNALS:
    /// Neither added nor aborted means that it failed; then error is the text for the user, which
    /// is not shown if isSilent. The reason is for a job that was aborted.
    void finished(qint64 id, bool added, bool aborted, AbstractDownloadAbortReason reason,
                  const QString &error, bool isSilent);
};
