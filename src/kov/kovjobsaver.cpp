#include "kovjobsaver.h"

#include "kovjobstore.h"

#include <QMetaObject>

#include <utility>

KovJobSaver::KovJobSaver(KovJobStore &store, const QMap<qint64, KovJob> &jobs)
    : m_store(store), m_jobs(jobs)
{
}

void KovJobSaver::saveSoon(qint64 id)
{
    if (m_unsaved.isEmpty())
        QMetaObject::invokeMethod(this, &KovJobSaver::save, Qt::QueuedConnection);
    m_unsaved.insert(id);
}

void KovJobSaver::save()
{
    QList<KovJob> jobs;
    const QSet<qint64> unsaved = std::exchange(m_unsaved, {});
    for (const qint64 id : unsaved) {
        if (const auto job = m_jobs.constFind(id); job != m_jobs.cend())
            jobs.append(*job);
    }
    if (!jobs.isEmpty())
        m_store.save(jobs);
}

void KovJobSaver::saveNow(const KovJob &job)
{
    m_unsaved.remove(job.id);
    m_store.save({job});
}
