#pragma once

#include <QList>
#include <QNetworkAccessManager>
#include <QSharedPointer>

/**
 * Network access managers to use in turn. One opens no more than six connections to a server, so
 * that a seventh request would wait without a word; yet connections are worth keeping for the next
 * request. So each exchange takes a manager to itself, the last one that was given back first.
 */
class KovNetworkPool {
public:
    /// Each manager is a thread. Beyond these, the requests share.
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
