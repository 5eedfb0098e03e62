#pragma once

#include "qtabstractvhipcpart.h"

#include <QSharedPointer>

class KovDownloadsQueue;

/**
 * The application's end of "incomingDownloads".
 *
 * A single download is requested at once, and answered when the server's response has arrived: the
 * browser may still have the download, and keeps it if we cannot get it. Several downloads were
 * picked by the user, and the browser has none of them: they are added without a request, and one
 * that fails later is shown as failed. The same holds for a stream, which browsers cannot save. A
 * job without any supported URL fails.
 */
class KovIncomingDownloadsPart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    explicit KovIncomingDownloadsPart(QSharedPointer<KovDownloadsQueue> queue,
                                      QObject *parent = nullptr);

    void processVh(const QHash<QString, QVariant> &map) override;

private:
    void answer(qint64 id, const QString &error);

    const QSharedPointer<KovDownloadsQueue> m_queue;
};
