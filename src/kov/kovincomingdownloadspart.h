#pragma once

#include "qtabstractvhipcpart.h"

#include <QSharedPointer>

class KovDownloadsQueue;
struct AbstractNewDownloadsRequest;

/// The application's end of "incomingDownloads": adds the selected downloads of each job to the
/// queue and answers when that is done. A job of which nothing can be downloaded fails.
class KovIncomingDownloadsPart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    explicit KovIncomingDownloadsPart(QSharedPointer<KovDownloadsQueue> queue,
                                      QObject *parent = nullptr);
    ~KovIncomingDownloadsPart() override;

    void processVh(const QHash<QString, QVariant> &map) override;

private:
    /// Whether there was anything that can be downloaded.
    bool addDownloads(const AbstractNewDownloadsRequest &request);

    const QSharedPointer<KovDownloadsQueue> m_queue;
};
