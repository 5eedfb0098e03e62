#pragma once

#include <QList>
#include <QNetworkAccessManager>
#include <QSharedPointer>

/**
 * A pool of network access managers. A manager opens at most six connections to a server and queues
 * further requests silently, but keeps connections alive for the next request. So each exchange
 * takes a manager for itself, the most recently used one first.
 */
class KovNetworkPool {
public:
    /// Each manager has a thread. Above this number, requests share.
    static constexpr qsizetype maxManagers = 32;

    QSharedPointer<QNetworkAccessManager> take()
    {
        if (!m_idle.isEmpty())
            return m_idle.takeLast();
        if (m_all.size() < maxManagers)
            m_all.append(QSharedPointer<QNetworkAccessManager>::create());
        else
            m_all.append(m_all.takeFirst());
        return m_all.constLast();
    }
    void giveBack(const QSharedPointer<QNetworkAccessManager> &manager)
    {
        if (!m_idle.contains(manager))
            m_idle.append(manager);
    }

private:
    QList<QSharedPointer<QNetworkAccessManager>> m_all;
    QList<QSharedPointer<QNetworkAccessManager>> m_idle;
};
