#pragma once

#include "abstractincomingdownloadsprocessor.h"

#include <QSharedPointer>
#include <QString>

class UniqueInt64IdGen;

/// Hands downloads to the main application over the link; VhIpcIncomingDownloadsClient sends them
/// and receives the answers.
class RemoteIncomingDownloadsProcessor : public AbstractIncomingDownloadsProcessor {
    Q_OBJECT
public:
    explicit RemoteIncomingDownloadsProcessor(QSharedPointer<UniqueInt64IdGen> idGen,
                                              QObject *parent = nullptr);

    /// An empty job with a new id.
    AbstractNewDownloadsRequestJob createJob() override;
    void process(const AbstractNewDownloadsRequestJob &job) override;

public Q_SLOTS:
    void onJobFinished(qint64 id, bool added, bool aborted, AbstractDownloadAbortReason reason,
                       const QString &error, bool isSilent);

Q_SIGNALS:
    void sendJobToServer(const AbstractNewDownloadsRequestJob &job);

private:
    const QSharedPointer<UniqueInt64IdGen> m_idGen;
};
