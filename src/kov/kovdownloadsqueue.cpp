#include "kovdownloadsqueue.h"

#include "qtappdefaultlogger.h"

#include <QFile>
#include <QMetaObject>
#include <QStorageInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr int tickMs = 1000;
constexpr int spaceCheckMs = 10'000;
/// The free space that a full disk must have before writing continues.
constexpr qint64 minFreeBytes = 32 << 20;

QString notSentAgain(const QString &reason)
{
    return reason + QStringLiteral(" (what was posted is sent again only when you ask for it)");
}

QString cannotStore(const KovJobStore &store)
{
    return QStringLiteral("cannot store the download: ") + store.errorString();
}

} // namespace

KovDownloadsQueue::KovDownloadsQueue(QSharedPointer<QtAppAbstractSettingsManager> settings,
                                     QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                                     const QString &storePath, QObject *parent, QtClock &clock)
    : QObject(parent), m_clock(clock), m_store(storePath),
      m_transfers(std::move(settings), std::move(portableModeSupport), clock),
      m_saver(m_store, m_jobs),
      m_offers([this](KovTransfer *transfer) { return take(transfer); },
               [this](const KovDownloadRequest &request) { keep(request); }, clock),
      m_tickTimer(clock.createTimer()), m_retryTimer(clock.createTimer()),
      m_spaceTimer(clock.createTimer())
{
    connect(&m_offers, &KovOffers::changed, this, &KovDownloadsQueue::workChanged);
    connect(m_tickTimer.get(), &QtSingleShotTimer::timeout, this, &KovDownloadsQueue::onTick);
    connect(m_retryTimer.get(), &QtSingleShotTimer::timeout, this, &KovDownloadsQueue::onRetryTime);
    connect(m_spaceTimer.get(), &QtSingleShotTimer::timeout, this,
            &KovDownloadsQueue::checkFreeSpace);
}

KovDownloadsQueue::~KovDownloadsQueue() = default;

void KovDownloadsQueue::start()
{
    const QList<KovJob> jobs = m_store.load();
    for (KovJob job : jobs) {
        m_lastId = std::max(m_lastId, job.id);
        if (job.state == KovJob::State::Running) {
            job.state = KovJob::State::Waiting;
            const auto request = m_store.request(job.id);
            if (request && !request->postData.isEmpty()) {
                job.state = KovJob::State::Failed;
                job.error = notSentAgain(QStringLiteral("the service ended"));
                m_saver.saveSoon(job.id);
            }
        }
        if (job.state == KovJob::State::Waiting)
            m_waiting.addReady(job.id);
        m_jobs.insert(job.id, job);
    }
    m_saver.save();
    startNext();
}

KovJob KovDownloadsQueue::newJob(const QUrl &url)
{
    KovJob job;
    job.id = ++m_lastId;
    job.url = url;
    job.added = QDateTime::currentDateTime();
    return job;
}

QString KovDownloadsQueue::add(const QList<KovDownloadRequest> &requests)
{
    QList<std::pair<KovJob, KovDownloadRequest>> added;
    added.reserve(requests.size());
    for (const KovDownloadRequest &request : requests)
        added.emplace_back(newJob(request.url), request);
    if (!m_store.add(added))
        return cannotStore(m_store);
    for (const auto &[job, request] : added) {
        m_jobs.insert(job.id, job);
        m_waiting.addReady(job.id);
        Q_EMIT jobAdded(job);
    }
    QMetaObject::invokeMethod(this, &KovDownloadsQueue::startNext, Qt::QueuedConnection);
    Q_EMIT workChanged();
    return {};
}

void KovDownloadsQueue::offer(const KovDownloadRequest &request, QObject *offerer,
                              KovOffers::Answer answer)
{
    KovJob job;
    job.url = request.url;
    m_offers.begin(m_transfers.create(job, request, this), offerer, std::move(answer));
}

QString KovDownloadsQueue::take(KovTransfer *transfer)
{
    KovJob job = newJob(transfer->job().url);
    const qint64 id = job.id;
    job.state = KovJob::State::Running;
    job.takeProgress(transfer->job());
    if (!m_store.add({{job, transfer->request()}}))
        return cannotStore(m_store);
    m_jobs.insert(id, job);
    watch(id, transfer);
    Q_EMIT jobAdded(job);
    // Above the limit it waits for its turn, unless its URL can be requested only once.
    if (m_running.size() > m_transfers.maxRunning() && transfer->isResumable()
        && !transfer->isEnding()) {
        m_jobs[id].state = KovJob::State::Waiting;
        transfer->stop();
    }
    return {};
}

void KovDownloadsQueue::keep(const KovDownloadRequest &request)
{
    if (request.postData.isEmpty()) {
        add({request});
        return;
    }
    KovJob job = newJob(request.url);
    job.state = KovJob::State::Failed; // on the disk from the start
    if (!m_store.add({{job, request}}))
        return;
    m_jobs.insert(job.id, job);
    Q_EMIT jobAdded(job);
    finish(m_jobs[job.id], KovJob::State::Failed,
           notSentAgain(QStringLiteral("the file did not come")));
}

void KovDownloadsQueue::watch(qint64 id, KovTransfer *transfer)
{
    connect(transfer, &KovTransfer::progressStored, this, [this, id, transfer] {
        KovJob &stored = m_jobs[id];
        if (transfer->job().receivedBytes() > stored.receivedBytes())
            stored.attempts = 0;
        stored.takeProgress(transfer->job());
        m_saver.saveSoon(id);
    });
    connect(transfer, &KovTransfer::naming, this, [this, id, transfer] {
        m_jobs[id].takeProgress(transfer->job());
        m_saver.saveNow(m_jobs.value(id));
    });
    connect(transfer, &KovTransfer::ended, this,
            [this, id](const KovFailure &failure) { onEnded(id, failure); });
    m_running.insert(id, transfer);
    if (!m_tickTimer->isActive())
        m_tickTimer->start(tickMs);
}

void KovDownloadsQueue::startNext()
{
    while (!m_stopping && !m_diskFull && m_waiting.hasReady()
           && m_running.size() < m_transfers.maxRunning())
        start(m_waiting.takeReady());
}

void KovDownloadsQueue::start(qint64 id)
{
    KovJob &job = m_jobs[id];
    const auto request = m_store.request(id);
    if (!request) {
        finish(job, KovJob::State::Failed, QStringLiteral("what was to be asked for is lost"));
        return;
    }
    job.state = KovJob::State::Running;
    job.error.clear();
    // A POST must not be sent again, whatever happens from now on.
    if (!request->postData.isEmpty())
        m_saver.saveNow(job);
    KovTransfer *const transfer = m_transfers.create(job, *request, this);
    watch(id, transfer);
    transfer->start();
}

void KovDownloadsQueue::onEnded(qint64 id, const KovFailure &failure)
{
    KovTransfer *const transfer = m_running.take(id);
    transfer->deleteLater();
    KovJob &job = m_jobs[id];
    if (transfer->job().receivedBytes() > job.receivedBytes())
        job.attempts = 0;
    job.takeProgress(transfer->job());
    const bool posts = !transfer->request().postData.isEmpty();
    if (!transfer->isFinished() && transfer->isRedirected())
        m_store.saveRequest(id, transfer->request());

    if (transfer->isFinished()) {
        finish(job, KovJob::State::Finished, {});
    } else if (job.state == KovJob::State::Paused) {
        m_saver.saveSoon(id);
    } else if (!failure) { // stopped, to be resumed later
        job.state = KovJob::State::Waiting;
        if (m_diskFull)
            job.error = QStringLiteral("the disk is full");
        m_waiting.addReady(id);
        m_saver.saveSoon(id);
    } else if (failure.kind == KovFailure::Kind::NoRoom
               || failure.kind == KovFailure::Kind::DiskFull) {
        waitForSpace(job, failure);
    } else if (failure.kind == KovFailure::Kind::Transient && !posts
               && job.attempts + 1 < maxAttempts && m_transfers.triesAgain()) {
        tryLater(job, failure);
    } else {
        finish(job, KovJob::State::Failed,
               posts && failure.kind == KovFailure::Kind::Transient ? notSentAgain(failure.text)
                                                                    : failure.text);
    }
    if (m_stopping) {
        m_saver.save();
        if (m_running.isEmpty())
            Q_EMIT stopped();
    }
    startNext();
    Q_EMIT workChanged();
}

void KovDownloadsQueue::tryLater(KovJob &job, const KovFailure &failure)
{
    ++job.attempts;
    job.state = KovJob::State::Waiting;
    job.error = failure.text;
    const qint64 delay =
        std::max<qint64>(KovWaitingJobs::retryDelayMs(job.attempts), failure.retryAfterMs);
    logLine(1,
            QStringLiteral("[KovDownloadsQueue]: download %1 waits %2 ms: %3")
                .arg(QString::number(job.id), QString::number(delay), failure.text));
    m_waiting.addRetry(job.id, m_clock.monotonicMs() + delay);
    m_saver.saveSoon(job.id);
    onRetryTime();
}

void KovDownloadsQueue::waitForSpace(KovJob &job, const KovFailure &failure)
{
    job.state = KovJob::State::Waiting;
    job.error = failure.text;
    m_saver.saveSoon(job.id);
    logLine(1,
            QStringLiteral("[KovDownloadsQueue]: WARNING: download %1 waits: %2")
                .arg(QString::number(job.id), failure.text));
    const qint64 missing = std::max<qint64>(0, job.totalBytes - job.receivedBytes());
    m_waiting.addWaitingForSpace(job.id, missing + minFreeBytes);
    if (!m_spaceTimer->isActive())
        m_spaceTimer->start(spaceCheckMs);
    if (failure.kind != KovFailure::Kind::DiskFull)
        return;
    m_diskFull = true;
    for (KovTransfer *const transfer : std::as_const(m_running))
        transfer->stop();
}

void KovDownloadsQueue::checkFreeSpace()
{
    const qint64 room = QStorageInfo(m_transfers.folderPath()).bytesAvailable();
    m_diskFull = m_diskFull && room < minFreeBytes;
    if (!m_waiting.onFreeSpace(room) || m_diskFull)
        m_spaceTimer->start(spaceCheckMs);
    startNext();
}

void KovDownloadsQueue::finish(KovJob &job, KovJob::State state, const QString &error)
{
    job.state = state;
    job.error = error;
    job.finished = QDateTime::currentDateTime();
    logLine(1,
            QStringLiteral("[KovDownloadsQueue]: download %1 %2")
                .arg(QString::number(job.id),
                     error.isEmpty() ? stateName(state) : stateName(state) + u": "_qs + error));
    m_saver.saveSoon(job.id);
    Q_EMIT jobEnded(job);
}

void KovDownloadsQueue::onTick()
{
    m_transfers.updateSpeedLimit();
    const QList<KovTransfer *> transfers = m_running.values();
    for (KovTransfer *const transfer : transfers)
        transfer->tick();
    if (!m_running.isEmpty())
        m_tickTimer->start(tickMs);
}

void KovDownloadsQueue::onRetryTime()
{
    if (const qint64 next = m_waiting.onRetryTime(m_clock.monotonicMs()); next >= 0)
        m_retryTimer->start(static_cast<int>(next));
    startNext();
}

QList<KovDownloadsQueue::Download> KovDownloadsQueue::downloads() const
{
    const QHash<qint64, qint64> retryTimes = m_waiting.retryTimes();
    QList<Download> downloads;
    downloads.reserve(m_jobs.size());
    for (const KovJob &job : m_jobs) {
        Download download{job, job.receivedBytes(), job.doneShare()};
        if (const KovTransfer *const transfer = m_running.value(job.id)) {
            download.job.takeProgress(transfer->job());
            download.receivedBytes = transfer->receivedBytes();
            download.doneShare = transfer->doneShare();
            download.bytesPerSecond = transfer->bytesPerSecond();
            download.connections = transfer->connections();
        } else if (const auto time = retryTimes.constFind(job.id); time != retryTimes.cend()) {
            download.retryInMs = std::max<qint64>(0, *time - m_clock.monotonicMs());
        }
        downloads.append(download);
    }
    return downloads;
}

bool KovDownloadsQueue::pause(qint64 id)
{
    KovJob &job = m_jobs[id];
    if (!job.isUnderWay())
        return false;
    job.state = KovJob::State::Paused;
    m_waiting.remove(id);
    if (KovTransfer *const transfer = m_running.value(id))
        transfer->stop();
    m_saver.saveNow(job);
    Q_EMIT workChanged();
    return true;
}

bool KovDownloadsQueue::resume(qint64 id)
{
    KovJob &job = m_jobs[id];
    if (!m_waiting.hurry(id) && job.state != KovJob::State::Paused
        && job.state != KovJob::State::Failed)
        return false;
    job.state = KovJob::State::Waiting;
    job.attempts = 0;
    job.error.clear();
    m_saver.saveNow(job);
    // One that is being paused is resumed once its transfer has ended.
    if (!m_running.contains(id))
        m_waiting.addReady(id);
    QMetaObject::invokeMethod(this, &KovDownloadsQueue::startNext, Qt::QueuedConnection);
    Q_EMIT workChanged();
    return true;
}

bool KovDownloadsQueue::remove(qint64 id, bool withFile)
{
    if (!m_store.remove(id))
        return false;
    KovJob job = m_jobs.take(id);
    m_waiting.remove(id);
    m_saver.remove(id);
    if (KovTransfer *const transfer = m_running.take(id)) {
        transfer->disconnect(this);
        transfer->stop();
        job.takeProgress(transfer->job());
        transfer->deleteLater();
    }
    removeFiles(job, withFile && job.state == KovJob::State::Finished);
    startNext();
    Q_EMIT workChanged();
    return true;
}

void KovDownloadsQueue::removeFiles(const KovJob &job, bool finishedToo)
{
    if (!job.partialPath.isEmpty())
        QFile::remove(job.partialPath);
    if (finishedToo)
        QFile::remove(job.path);
}

bool KovDownloadsQueue::hasWork() const
{
    return !m_running.isEmpty() || !m_offers.isEmpty() || !m_waiting.isEmpty();
}

void KovDownloadsQueue::stop()
{
    m_stopping = true;
    m_offers.stop();
    for (KovTransfer *const transfer : std::as_const(m_running))
        transfer->stop();
    if (m_running.isEmpty())
        QMetaObject::invokeMethod(this, &KovDownloadsQueue::stopped, Qt::QueuedConnection);
}
