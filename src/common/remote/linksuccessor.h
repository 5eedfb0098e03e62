#pragma once

#include "lostdownloads.h"
#include "vhipcqueuedpart.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

class AbstractIncomingDownloadsProcessor;

/**
 * A second, detached process of this program, which delivers the messages that still wait for the
 * application when the browser ends the first one. It waits as long as the messages may.
 *
 * They are passed on its standard input, from memory, in the link's encoding, and so appear neither
 * on a command line or in the environment nor on the disk, but for the names of downloads that
 * could not be delivered (LostDownloads).
 */
namespace LinkSuccessor {

/// On the command line: messages to deliver are on standard input, and no browser.
QString commandLineSwitch();
/// False, with a line in the log, when the process cannot be started.
bool start(const QList<VhIpcQueuedMessage> &messages);
/// In the successor: what start() was given, as far as it can be read.
QList<VhIpcQueuedMessage> receive();

/// In the successor: follows what becomes of the downloads among the messages. Its destruction logs
/// that, and keeps those that were lost.
class DownloadsReport : public QObject {
    Q_OBJECT
public:
    DownloadsReport(const QList<VhIpcQueuedMessage> &messages,
                    const AbstractIncomingDownloadsProcessor &processor, LostDownloads lost);
    ~DownloadsReport() override;

private:
    /// By the job's id; the reason is that of a job of which no end was told.
    QHash<qint64, LostDownload> m_pending;
    const qsizetype m_count;
    const LostDownloads m_lost;
};

} // namespace LinkSuccessor
