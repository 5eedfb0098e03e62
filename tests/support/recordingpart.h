#pragma once

#include "qtabstractvhipcpart.h"

#include <QList>

/// A part that records the messages it receives.
class RecordingPart : public QtAbstractVhIpcPart {
public:
    void processVh(const QHash<QString, QVariant> &map) override { m_maps += map; }
    void onConnectChanged(bool connected) override
    {
        QtAbstractVhIpcPart::onConnectChanged(connected);
        m_connects += connected;
    }

    const QList<QHash<QString, QVariant>> &maps() const { return m_maps; }
    const QList<bool> &connects() const { return m_connects; }

private:
    QList<QHash<QString, QVariant>> m_maps;
    QList<bool> m_connects;
};
