#include "linksuccessor.h"

#include "abstractincomingdownloadsprocessor.h"
#include "qtappdefaultlogger.h"
#include "qtvhbodycodec.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QFile>
#include <QMetaEnum>
#include <QProcess>
#include <QUrl>

#include <linux/close_range.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace {

bool write(QFile &file, const QList<VhIpcQueuedMessage> &messages)
{
    const int memory = ::memfd_create("kovalo-messages", MFD_CLOEXEC);
    if (memory < 0 || !file.open(memory, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle))
        return false;
    QDataStream stream(&file);
    for (const VhIpcQueuedMessage &each : messages)
        stream << each.waitedMs << QtVhBodyCodec::toDataStream(each.message);
    return file.flush() && stream.status() == QDataStream::Ok;
}

/// The name under which the user knows the job: that of its first download.
QString nameOf(const QHash<QString, QVariant> &message)
{
    const QString key = VhIpcIncomingDownloadsKeys::request();
    const auto request = toNewDownloadsRequest(message.value(key).toHash());
    const auto info = request.downloads.isEmpty() ? nullptr : request.downloads.constFirst().info;
    if (!info)
        return {};
    if (!info->preferredFileTitle.isEmpty())
        return info->preferredFileTitle;
    const QUrl &url = info->source.url;
    return url.fileName().isEmpty() ? url.host() : url.fileName();
}

QHash<qint64, LostDownload> jobsIn(const QList<VhIpcQueuedMessage> &messages)
{
    QHash<qint64, LostDownload> jobs;
    for (const VhIpcQueuedMessage &each : messages) {
        if (each.message.value(VhIpcKeys::name()) == VhIpcIncomingDownloadsKeys::partName())
            jobs.insert(each.message.value(VhIpcKeys::id()).toLongLong(),
                        {nameOf(each.message), QStringLiteral("no answer")});
    }
    return jobs;
}

} // namespace

namespace LinkSuccessor {

QString commandLineSwitch() { return QStringLiteral("--deliver"); }

bool start(const QList<VhIpcQueuedMessage> &messages)
{
    QFile file;
    QProcess process;
    process.setProgram(QCoreApplication::applicationFilePath());
    process.setArguments({commandLineSwitch()});
    if (!write(file, messages)) {
        logLine(1, QStringLiteral("[LinkSuccessor]: WARNING: no memory for the messages"));
        return false;
    }
    // Reopened, to be read from its beginning.
    process.setStandardInputFile(QStringLiteral("/proc/self/fd/%1").arg(file.handle()));
    // The browser waits until its pipes are closed. All other descriptors are closed by exec(). An
    // old kernel has neither the call nor the flag; Qt's own descriptors do not need it.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    (void)::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    if (!process.startDetached()) {
        // Not QProcess::errorString(), which is in the user's language.
        logLine(1,
                QStringLiteral("[LinkSuccessor]: WARNING: no process can be started: ")
                    + QLatin1String(
                        QMetaEnum::fromType<QProcess::ProcessError>().valueToKey(process.error())));
        return false;
    }
    logLine(1,
            QStringLiteral("[LinkSuccessor]: another process delivers %1 messages")
                .arg(messages.size()));
    return true;
}

QList<VhIpcQueuedMessage> receive()
{
    QList<VhIpcQueuedMessage> messages;
    QFile file;
    if (!file.open(stdin, QIODevice::ReadOnly))
        return messages;
    QDataStream stream(&file);
    while (!stream.atEnd()) {
        qint64 waitedMs = 0;
        QByteArray body;
        stream >> waitedMs >> body;
        const auto message = QtVhBodyCodec::fromDataStream(body);
        if (stream.status() != QDataStream::Ok || !message)
            break;
        messages.append({.message = *message, .waitedMs = waitedMs});
    }
    logLine(1, QStringLiteral("[LinkSuccessor]: %1 messages to deliver").arg(messages.size()));
    return messages;
}

DownloadsReport::DownloadsReport(const QList<VhIpcQueuedMessage> &messages,
                                 const AbstractIncomingDownloadsProcessor &processor,
                                 LostDownloads lost)
    : m_pending(jobsIn(messages)), m_count(m_pending.size()), m_lost(std::move(lost))
{
    connect(&processor, &AbstractIncomingDownloadsProcessor::finished, this,
            [this](qint64 id, bool added, bool aborted, AbstractDownloadAbortReason,
                   const QString &error) {
                const auto job = m_pending.find(id);
                if (job == m_pending.end())
                    return;
                if (added || aborted)
                    m_pending.remove(id);
                else
                    job->reason = error;
            });
}

DownloadsReport::~DownloadsReport()
{
    if (m_count > 0)
        logLine(1,
                QStringLiteral("[LinkSuccessor]: %1 of %2 downloads were delivered")
                    .arg(m_count - m_pending.size())
                    .arg(m_count));
    for (const LostDownload &lost : std::as_const(m_pending))
        m_lost.add(lost);
}

} // namespace LinkSuccessor
