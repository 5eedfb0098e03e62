#pragma once

#include "kovjob.h"

#include <QMap>
#include <QObject>
#include <QSet>

class KovJobStore;

/// Writes jobs to the store when they have changed.
class KovJobSaver : public QObject {
    Q_OBJECT
public:
    /// Both outlive this.
    KovJobSaver(KovJobStore &store, const QMap<qint64, KovJob> &jobs);

    /// In one transaction with all others that change in this turn of the event loop.
    void saveSoon(qint64 id);
    /// Those that are waiting for that.
    void save();
    /// At once.
    void saveNow(const KovJob &job);
    /// It is no longer to be saved.
    void remove(qint64 id) { m_unsaved.remove(id); }

private:
    KovJobStore &m_store;
    const QMap<qint64, KovJob> &m_jobs;
    QSet<qint64> m_unsaved;
};
