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
 * application when the browser ends the first one. It waits until they are delivered or expire.
 *
 * They are passed on its standard input, in a memory file, in the link's encoding. So they appear
 * neither on a command line nor in the environment nor on the disk, except the names of downloads
 * that could not be delivered (LostDownloads).
 */
namespace LinkSuccessor {

/// The command-line option: standard input has messages to deliver, and is not a browser's pipe.
QString commandLineSwitch();
/// False, and logged, if the process cannot be started.
bool start(const QList<VhIpcQueuedMessage> &messages);
/// In the successor: the messages that were given to start(), as far as they can be read.
QList<VhIpcQueuedMessage> receive();

/// In the successor: tracks the outcome of the downloads among the messages. The destructor logs
/// it, and stores the lost ones.
class DownloadsReport : public QObject {
    Q_OBJECT
public:
    DownloadsReport(const QList<VhIpcQueuedMessage> &messages,
                    const AbstractIncomingDownloadsProcessor &processor, LostDownloads lost);
    ~DownloadsReport() override;

private:
    /// By the job's id; the reason is the one for a job whose end was not reported.
    QHash<qint64, LostDownload> m_pending;
    const qsizetype m_count;
    const LostDownloads m_lost;
};

} // namespace LinkSuccessor
