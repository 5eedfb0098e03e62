#include "kovdownloadsqueue.h"

#include "dmcoresettings.h"
#include "kovdownloadfolder.h"
#include "kovnetworkpool.h"
#include "kovspeedlimit.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappdefaultlogger.h"
#include "qtappportablemodesupport.h"
#include "systemdefaultdownloadlocation.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaObject>
#include <QStorageInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr int tickMs = 1000;
constexpr int roomCheckMs = 10'000;
constexpr int firstRetryMs = 1000;
constexpr int longestRetryMs = 300'000;
/// What a full disk must have at least before anything is written to it again.
constexpr qint64 leastRoomBytes = 32 << 20;

QString notSentAgain(const QString &reason)
{
    return reason + QStringLiteral(" (what was posted is sent again only when you ask for it)");
}

} // namespace

int KovDownloadsQueue::retryDelayMs(int attempts)
{
    int delay = firstRetryMs;
    for (int i = 1; i < attempts && delay < longestRetryMs; ++i)
        delay *= 2;
    return std::min(delay, longestRetryMs);
}

KovDownloadsQueue::KovDownloadsQueue(QSharedPointer<QtAppAbstractSettingsManager> settings,
                                     QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                                     const QString &storePath, QObject *parent, QtClock &clock)
    : QObject(parent), m_settings(std::move(settings)),
      m_portableModeSupport(std::move(portableModeSupport)), m_clock(clock), m_store(storePath),
      m_network(QSharedPointer<KovNetworkPool>::create()),
      m_speedLimit(QSharedPointer<KovSpeedLimit>::create(clock)), m_tickTimer(clock.createTimer()),
      m_retryTimer(clock.createTimer()), m_roomTimer(clock.createTimer())
{
    connect(m_tickTimer.get(), &QtSingleShotTimer::timeout, this, &KovDownloadsQueue::onTick);
    connect(m_retryTimer.get(), &QtSingleShotTimer::timeout, this, &KovDownloadsQueue::onRetryTime);
    connect(m_roomTimer.get(), &QtSingleShotTimer::timeout, this, &KovDownloadsQueue::onRoomTime);
}

KovDownloadsQueue::~KovDownloadsQueue()
{
    for (const auto &offer : m_offers)
        offer.first->disconnect(this);
}

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
                m_unsaved.insert(job.id);
            }
        }
        if (job.state == KovJob::State::Waiting)
            m_ready.insert(job.id);
        m_jobs.insert(job.id, job);
    }
    save();
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
        return QStringLiteral("cannot store the download: ") + m_store.errorString();
    for (const auto &[job, request] : added) {
        m_jobs.insert(job.id, job);
        m_ready.insert(job.id);
        Q_EMIT jobAdded(job);
    }
    QMetaObject::invokeMethod(this, &KovDownloadsQueue::startNext, Qt::QueuedConnection);
    Q_EMIT workChanged();
    return {};
}

void KovDownloadsQueue::offer(const KovDownloadRequest &request, QObject *offerer, Answer answer)
{
    KovJob job;
    job.url = request.url;
    KovTransfer *const transfer = createTransfer(job, request);
    Offer &offer = m_offers[transfer];
    offer.offerer = offerer;
    offer.answer = std::move(answer);
    offer.timer = m_clock.createTimer();
    connect(offer.timer.get(), &QtSingleShotTimer::timeout, this, [this, transfer] {
        m_offers[transfer].timedOut = true;
        transfer->stop();
    });
    offer.timer->start(offerAnsweredWithinMs);
    connect(transfer, &KovTransfer::accepted, this,
            [this, transfer] { onOfferAccepted(transfer); });
    connect(transfer, &KovTransfer::ended, this, [this, transfer](const KovFailure &failure) {
        if (m_offers.contains(transfer))
            onOfferEnded(transfer, failure);
    });
    Q_EMIT workChanged();
    transfer->start();
}

void KovDownloadsQueue::onOfferAccepted(KovTransfer *transfer)
{
    const auto offer = m_offers.find(transfer);
    if (offer == m_offers.end() || offer->second.timedOut)
        return;
    const Answer answer = offer->second.answer;
    const bool isListening = offer->second.offerer;
    KovJob job = newJob(transfer->job().url);
    const qint64 id = job.id;
    job.state = KovJob::State::Running;
    job.takeProgress(transfer->job());
    if (!m_store.add({{job, transfer->request()}})) {
        // It ends as an offer, and what there is of the file goes.
        offer->second.answer = [answer, error = m_store.errorString()](const QString &) {
            answer(QStringLiteral("cannot store the download: ") + error);
        };
        transfer->stop();
        return;
    }
    m_offers.erase(offer);
    m_jobs.insert(id, job);
    watch(id, transfer);
    if (isListening)
        answer({});
    Q_EMIT jobAdded(job);
    // Over the limit it waits for its turn if it can; a link that serves once cannot.
    if (m_running.size() > number(toString(DmCoreSettings::MaxDownloads), defaultMaxRunning)
        && transfer->isResumable() && !transfer->isEnding()) {
        m_jobs[id].state = KovJob::State::Waiting;
        transfer->stop();
    }
}

void KovDownloadsQueue::onOfferEnded(KovTransfer *transfer, const KovFailure &failure)
{
    const auto offer = m_offers.find(transfer);
    const Answer answer = offer->second.answer;
    const bool isListening = offer->second.offerer;
    const bool timedOut = offer->second.timedOut;
    m_offers.erase(offer);
    removeFiles(transfer->job(), false);
    const KovDownloadRequest request = transfer->request();
    transfer->deleteLater();
    if (!isListening && !m_stopping)
        add({request}); // nobody else may have it
    else if (isListening)
        answer(timedOut ? QStringLiteral("the server does not answer") : failure.text);
    Q_EMIT workChanged();
}

KovTransfer *KovDownloadsQueue::createTransfer(const KovJob &job, const KovDownloadRequest &request)
{
    m_speedLimit->setBytesPerSecond(number(toString(DmCoreSettings::MaxDownloadSpeed), 0));
    const qint64 connections =
        number(toString(DmCoreSettings::MaxConnectionsPerServer), defaultMaxConnections);
    return new KovTransfer(
        job, request,
        {m_network, m_speedLimit,
         folder(job.partialPath.isEmpty() ? folderPath() : QFileInfo(job.partialPath).path()),
         static_cast<int>(std::min<qint64>(connections, KovNetworkPool::maxManagers)),
         m_settings->value(toString(DmCoreSettings::TakeLastModifiedDateFromServer)) == u"1"},
        this, m_clock);
}

void KovDownloadsQueue::watch(qint64 id, KovTransfer *transfer)
{
    connect(transfer, &KovTransfer::progressStored, this, [this, id, transfer] {
        KovJob &stored = m_jobs[id];
        if (transfer->job().receivedBytes() > stored.receivedBytes())
            stored.attempts = 0;
        stored.takeProgress(transfer->job());
        saveSoon(id);
    });
    connect(transfer, &KovTransfer::naming, this, [this, id, transfer] {
        m_jobs[id].takeProgress(transfer->job());
        saveOne(m_jobs.value(id));
    });
    connect(transfer, &KovTransfer::ended, this,
            [this, id](const KovFailure &failure) { onEnded(id, failure); });
    m_running.insert(id, transfer);
    if (!m_tickTimer->isActive())
        m_tickTimer->start(tickMs);
}

void KovDownloadsQueue::startNext()
{
    const qint64 maxRunning = number(toString(DmCoreSettings::MaxDownloads), defaultMaxRunning);
    while (!m_stopping && !m_diskFull && !m_ready.empty() && m_running.size() < maxRunning) {
        const qint64 id = *m_ready.cbegin();
        m_ready.erase(m_ready.cbegin());
        start(id);
    }
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
    // Nobody must send it a second time, whatever happens from now on.
    if (!request->postData.isEmpty())
        saveOne(job);
    KovTransfer *const transfer = createTransfer(job, *request);
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
    if (!transfer->isFinished() && transfer->isAskedElsewhere())
        m_store.saveRequest(id, transfer->request());

    if (transfer->isFinished()) {
        finish(job, KovJob::State::Finished, {});
    } else if (job.state == KovJob::State::Paused) {
        saveSoon(id);
    } else if (!failure) { // stopped, to go on later
        job.state = KovJob::State::Waiting;
        m_ready.insert(id);
        saveSoon(id);
    } else if (failure.kind == KovFailure::Kind::NoRoom
               || failure.kind == KovFailure::Kind::DiskFull) {
        waitForRoom(job, failure);
    } else if (failure.kind == KovFailure::Kind::Passing && !posts && job.attempts + 1 < maxAttempts
               && m_settings->value(toString(DmCoreSettings::AutoRetryFailedDownloads)) != u"0") {
        tryLater(job, failure);
    } else {
        finish(job, KovJob::State::Failed,
               posts && failure.kind == KovFailure::Kind::Passing ? notSentAgain(failure.text)
                                                                  : failure.text);
    }
    if (m_stopping) {
        save();
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
    const qint64 delay = std::max<qint64>(retryDelayMs(job.attempts), failure.retryAfterMs);
    logLine(1,
            QStringLiteral("[KovDownloadsQueue]: download %1 waits %2 ms: %3")
                .arg(QString::number(job.id), QString::number(delay), failure.text));
    m_retries.emplace(m_clock.monotonicMs() + delay, job.id);
    saveSoon(job.id);
    onRetryTime();
}

void KovDownloadsQueue::waitForRoom(KovJob &job, const KovFailure &failure)
{
    job.state = KovJob::State::Waiting;
    job.error = failure.text;
    saveSoon(job.id);
    logLine(1,
            QStringLiteral("[KovDownloadsQueue]: WARNING: download %1 waits: %2")
                .arg(QString::number(job.id), failure.text));
    const qint64 missing = std::max<qint64>(0, job.totalBytes - job.receivedBytes());
    m_roomless.insert(job.id, missing + leastRoomBytes);
    if (!m_roomTimer->isActive())
        m_roomTimer->start(roomCheckMs);
    if (failure.kind != KovFailure::Kind::DiskFull)
        return;
    m_diskFull = true;
    for (KovTransfer *const transfer : std::as_const(m_running))
        transfer->stop();
}

void KovDownloadsQueue::onRoomTime()
{
    const qint64 room = QStorageInfo(folderPath()).bytesAvailable();
    m_diskFull = m_diskFull && room < leastRoomBytes;
    for (auto waiting = m_roomless.begin(); waiting != m_roomless.end();) {
        if (*waiting > room) {
            ++waiting;
            continue;
        }
        m_ready.insert(waiting.key());
        waiting = m_roomless.erase(waiting);
    }
    if (m_diskFull || !m_roomless.isEmpty())
        m_roomTimer->start(roomCheckMs);
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
    saveSoon(job.id);
    Q_EMIT jobEnded(job);
}

void KovDownloadsQueue::onTick()
{
    m_speedLimit->setBytesPerSecond(number(toString(DmCoreSettings::MaxDownloadSpeed), 0));
    const QList<KovTransfer *> transfers = m_running.values();
    for (KovTransfer *const transfer : transfers)
        transfer->tick();
    if (!m_running.isEmpty())
        m_tickTimer->start(tickMs);
}

void KovDownloadsQueue::onRetryTime()
{
    const qint64 now = m_clock.monotonicMs();
    while (!m_retries.empty() && m_retries.cbegin()->first <= now) {
        m_ready.insert(m_retries.cbegin()->second);
        m_retries.erase(m_retries.cbegin());
    }
    if (!m_retries.empty())
        m_retryTimer->start(static_cast<int>(m_retries.cbegin()->first - now));
    startNext();
}

void KovDownloadsQueue::saveSoon(qint64 id)
{
    if (m_unsaved.isEmpty())
        QMetaObject::invokeMethod(this, &KovDownloadsQueue::save, Qt::QueuedConnection);
    m_unsaved.insert(id);
}

void KovDownloadsQueue::save()
{
    QList<KovJob> jobs;
    for (const qint64 id : std::as_const(m_unsaved)) {
        if (const auto job = m_jobs.constFind(id); job != m_jobs.cend())
            jobs.append(*job);
    }
    m_unsaved.clear();
    if (!jobs.isEmpty())
        m_store.save(jobs);
}

void KovDownloadsQueue::saveOne(const KovJob &job)
{
    m_unsaved.remove(job.id);
    m_store.save({job});
}

QList<KovDownloadsQueue::Download> KovDownloadsQueue::downloads() const
{
    QHash<qint64, qint64> retryTimes;
    for (const auto &[time, id] : m_retries)
        retryTimes.insert(id, time);
    QList<Download> downloads;
    downloads.reserve(m_jobs.size());
    for (const KovJob &job : m_jobs) {
        Download download{job, job.receivedBytes()};
        if (const KovTransfer *const transfer = m_running.value(job.id)) {
            download.job.takeProgress(transfer->job());
            download.receivedBytes = transfer->receivedBytes();
            download.bytesPerSecond = transfer->bytesPerSecond();
            download.connections = transfer->connections();
        } else if (const auto time = retryTimes.constFind(job.id); time != retryTimes.cend()) {
            download.retryInMs = std::max<qint64>(0, *time - m_clock.monotonicMs());
        }
        downloads.append(download);
    }
    return downloads;
}

bool KovDownloadsQueue::waitNoLonger(qint64 id)
{
    const auto retries =
        std::erase_if(m_retries, [id](const auto &retry) { return retry.second == id; });
    return m_roomless.remove(id) || retries > 0;
}

bool KovDownloadsQueue::pause(qint64 id)
{
    KovJob &job = m_jobs[id];
    if (!job.isUnderWay())
        return false;
    job.state = KovJob::State::Paused;
    m_ready.erase(id);
    waitNoLonger(id);
    if (KovTransfer *const transfer = m_running.value(id))
        transfer->stop();
    saveOne(job);
    Q_EMIT workChanged();
    return true;
}

bool KovDownloadsQueue::resume(qint64 id)
{
    KovJob &job = m_jobs[id];
    if (!waitNoLonger(id) && job.state != KovJob::State::Paused
        && job.state != KovJob::State::Failed)
        return false;
    job.state = KovJob::State::Waiting;
    job.attempts = 0;
    job.error.clear();
    saveOne(job);
    // One that is being paused just now goes on when it has ended.
    if (!m_running.contains(id))
        m_ready.insert(id);
    QMetaObject::invokeMethod(this, &KovDownloadsQueue::startNext, Qt::QueuedConnection);
    Q_EMIT workChanged();
    return true;
}

bool KovDownloadsQueue::remove(qint64 id, bool withFile)
{
    if (!m_store.remove(id))
        return false;
    KovJob job = m_jobs.take(id);
    m_ready.erase(id);
    m_unsaved.remove(id);
    waitNoLonger(id);
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
    return !m_running.isEmpty() || !m_offers.empty() || !m_ready.empty() || !m_retries.empty()
        || !m_roomless.isEmpty();
}

void KovDownloadsQueue::stop()
{
    m_stopping = true;
    for (const auto &offer : m_offers)
        offer.first->stop();
    for (KovTransfer *const transfer : std::as_const(m_running))
        transfer->stop();
    if (m_running.isEmpty())
        QMetaObject::invokeMethod(this, &KovDownloadsQueue::stopped, Qt::QueuedConnection);
}

QString KovDownloadsQueue::folderPath() const
{
    QString path = m_settings->value(toString(DmCoreSettings::DefaultDownloadPath));
    if (m_portableModeSupport)
        path = m_portableModeSupport->decodePath(path);
    return path.isEmpty() ? systemDefaultDownloadLocation() : path;
}

std::shared_ptr<KovDownloadFolder> KovDownloadsQueue::folder(const QString &path)
{
    const QString suffix = m_settings->value(toString(DmCoreSettings::PartialDownloadFileSuffix));
    std::shared_ptr<KovDownloadFolder> &folder = m_folders[path];
    if (!folder || folder->partialSuffix() != suffix)
        folder = std::make_shared<KovDownloadFolder>(path, suffix);
    return folder;
}

qint64 KovDownloadsQueue::number(const QString &setting, qint64 otherwise) const
{
    const qint64 value = m_settings->value(setting).toLongLong();
    return value > 0 ? value : otherwise;
}
