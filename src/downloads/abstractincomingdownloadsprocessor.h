#pragma once

#include "abstractdownloadenums.h"
#include "abstractnewdownloadsrequestjob.h"

#include <QObject>
#include <QString>

/// Takes downloads that come from outside of the application, and tells what became of them.
class AbstractIncomingDownloadsProcessor : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// An empty job with an id of its own.
    virtual AbstractNewDownloadsRequestJob createJob() = 0;
    /// Begins a job that createJob() made. Its outcome is told by finished(), once, now or later.
    virtual void process(const AbstractNewDownloadsRequestJob &job) = 0;

Q_SIGNALS:
    /// Neither added nor aborted means that it failed; error is the text for the user then, and
    /// isSilent says that it is not to be shown. The reason says why it was aborted, if it was.
    void finished(qint64 id, bool added, bool aborted, AbstractDownloadAbortReason reason,
                  const QString &error, bool isSilent);
};
