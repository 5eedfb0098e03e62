#pragma once

#include "qtabstractvhipcpart.h"

#include <QSharedPointer>

class KovDownloadsQueue;

/**
 * The application's end of "incomingDownloads".
 *
 * A single download is asked for at once, and is answered with the server's answer: the browser
 * that offers it may still have it, and keeps it when we cannot get it. Of several, which the user
 * has picked, the browser has none: they are added without a look, and one that fails is shown as
 * failed; so is a stream, which no browser saves. A job of which nothing can be downloaded fails.
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
