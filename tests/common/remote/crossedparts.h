#pragma once

#include "qtabstractvhipcpart.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QVariant>

/// A link between two parts on which messages lie until the test delivers them, so that messages of
/// both ends can cross in every order.
class CrossedParts : public QObject {
public:
    using Message = QHash<QString, QVariant>;

    CrossedParts(QtAbstractVhIpcPart &a, QtAbstractVhIpcPart &b) : m_a(a), m_b(b)
    {
        connect(&a, &QtAbstractVhIpcPart::sendVh, this,
                [this](const Message &message) { put(m_toB, message); });
        connect(&b, &QtAbstractVhIpcPart::sendVh, this,
                [this](const Message &message) { put(m_toA, message); });
    }

    void setConnected(bool connected)
    {
        m_connected = connected;
        m_toA.clear();
        m_toB.clear();
        m_a.onConnectChanged(connected);
        m_b.onConnectChanged(connected);
    }

    bool deliverToA() { return deliver(m_toA, m_a); }
    bool deliverToB() { return deliver(m_toB, m_b); }
    /// Returns how many messages it took until both ends were silent; gives up at "limit".
    int deliverAll(int limit = 1000)
    {
        int count = 0;
        while (count < limit && (deliverToB() || deliverToA()))
            ++count;
        return count;
    }

private:
    void put(QList<Message> &queue, const Message &message)
    {
        if (m_connected)
            queue.append(message);
    }
    static bool deliver(QList<Message> &queue, QtAbstractVhIpcPart &part)
    {
        if (queue.isEmpty())
            return false;
        part.processVh(queue.takeFirst());
        return true;
    }

    QtAbstractVhIpcPart &m_a;
    QtAbstractVhIpcPart &m_b;
    bool m_connected = false;
    QList<Message> m_toA;
    QList<Message> m_toB;
};
