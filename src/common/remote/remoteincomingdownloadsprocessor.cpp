#include "remoteincomingdownloadsprocessor.h"

#include "uniqueint64idgen.h"

#include <utility>

RemoteIncomingDownloadsProcessor::RemoteIncomingDownloadsProcessor(
    QSharedPointer<UniqueInt64IdGen> idGen, QObject *parent)
    : AbstractIncomingDownloadsProcessor(parent), m_idGen(std::move(idGen))
{
}

AbstractNewDownloadsRequestJob RemoteIncomingDownloadsProcessor::createJob()
{
    AbstractNewDownloadsRequestJob job;
    job.id = m_idGen->nextId();
    return job;
}

void RemoteIncomingDownloadsProcessor::process(const AbstractNewDownloadsRequestJob &job)
{
    Q_EMIT sendJobToServer(job);
}

void RemoteIncomingDownloadsProcessor::onJobFinished(qint64 id, bool added, bool aborted,
                                                     AbstractDownloadAbortReason reason,
                                                     const QString &error, bool isSilent)
{
    Q_EMIT finished(id, added, aborted, reason, error, isSilent);
}
