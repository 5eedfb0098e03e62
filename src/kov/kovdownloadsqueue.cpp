#include "kovdownloadsqueue.h"

#include "dmcoresettings.h"
#include "kovhttpdownload.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappdefaultlogger.h"
#include "qtappportablemodesupport.h"
#include "systemdefaultdownloadlocation.h"

#include <QMetaObject>

#include <utility>

KovDownloadsQueue::KovDownloadsQueue(QSharedPointer<QtAppAbstractSettingsManager> settings,
                                     QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                                     QObject *parent)
    : QObject(parent), m_settings(std::move(settings)),
      m_portableModeSupport(std::move(portableModeSupport))
{
}

KovDownloadsQueue::~KovDownloadsQueue() = default;

void KovDownloadsQueue::add(const KovDownloadRequest &request)
{
    Job job;
    job.id = static_cast<int>(m_jobs.size()) + 1;
    job.url = request.url;
    m_waiting.push_back({job.id, request});
    QMetaObject::invokeMethod(this, &KovDownloadsQueue::startNext, Qt::QueuedConnection);
    m_jobs.append(job);
}

QList<KovDownloadsQueue::Job> KovDownloadsQueue::jobs() const
{
    QList<Job> jobs = m_jobs;
    for (auto running = m_running.cbegin(); running != m_running.cend(); ++running) {
        Job &job = jobs[running.key() - 1];
        job.receivedBytes = running.value()->receivedBytes();
        job.totalBytes = running.value()->totalBytes();
        job.path = running.value()->path();
    }
    return jobs;
}

void KovDownloadsQueue::startNext()
{
    while (!m_waiting.empty() && m_running.size() < maxRunning()) {
        start(m_waiting.front());
        m_waiting.pop_front();
    }
}

void KovDownloadsQueue::start(const Waiting &waiting)
{
    auto *const download = new KovHttpDownload(waiting.request, folder(), m_network, this);
    const int id = waiting.id;
    connect(download, &KovHttpDownload::finished, this,
            [this, id](const QString &error) { onFinished(id, error); });
    job(id).state = Job::State::Running;
    m_running.insert(id, download);
    download->start();
}

void KovDownloadsQueue::onFinished(int id, const QString &error)
{
    KovHttpDownload *const download = m_running.take(id);
    Job &ended = job(id);
    ended.state = error.isEmpty() ? Job::State::Finished : Job::State::Failed;
    ended.receivedBytes = download->receivedBytes();
    ended.totalBytes = download->totalBytes();
    ended.path = download->path();
    ended.error = error;
    download->deleteLater();
    logLine(1,
            QStringLiteral("[KovDownloadsQueue]: download %1 %2")
                .arg(QString::number(id),
                     error.isEmpty() ? QStringLiteral("finished")
                                     : QStringLiteral("failed: ") + error));
    Q_EMIT jobEnded(id);
    startNext();
}

int KovDownloadsQueue::maxRunning() const
{
    const int setting = m_settings->value(toString(DmCoreSettings::MaxDownloads)).toInt();
    return setting > 0 ? setting : defaultMaxRunning;
}

const std::shared_ptr<KovDownloadFolder> &KovDownloadsQueue::folder()
{
    QString path = m_settings->value(toString(DmCoreSettings::DefaultDownloadPath));
    if (m_portableModeSupport)
        path = m_portableModeSupport->decodePath(path);
    if (path.isEmpty())
        path = systemDefaultDownloadLocation();
    const QString suffix = m_settings->value(toString(DmCoreSettings::PartialDownloadFileSuffix));
    if (!m_folder || m_folder->path() != path || m_folder->partialSuffix() != suffix)
        m_folder = std::make_shared<KovDownloadFolder>(path, suffix);
    return m_folder;
}
