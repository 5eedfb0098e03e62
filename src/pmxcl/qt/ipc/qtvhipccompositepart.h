#pragma once

#include "qtabstractvhipcpart.h"

#include <QHash>
#include <QSharedPointer>

class QtToggleSwitchObject;

/**
 * Lets several parts share one link: a message goes to the part whose name it carries under the key
 * "name". Messages for unknown parts, and those that a closed gate stops, are dropped silently.
 *
 * Two gates may hold parts back. A part is told of a connection only once its gates are open; a
 * gate that closes later stops its messages without telling it of a disconnection.
 *
 * Ready when all parts are; requires the server when one part does.
 */
class QtVhIpcCompositePart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    /// A missing gate counts as open.
    QtVhIpcCompositePart(const QSharedPointer<QtToggleSwitchObject> &firstGate,
                         const QSharedPointer<QtToggleSwitchObject> &secondGate,
                         QObject *parent = nullptr);

    /// The first part that is added under a name stays.
    void addPart(const QString &name, const QSharedPointer<QtAbstractVhIpcPart> &part,
                 bool needsFirstGate, bool needsSecondGate);
    /// Null when there is none of that name.
    QSharedPointer<QtAbstractVhIpcPart> part(const QString &name) const;

    /// Logs a change.
    void setReady(bool ready);

    void processVh(const QHash<QString, QVariant> &map) override;
    void onConnectChanged(bool connected) override;

private:
    struct Part {
        QSharedPointer<QtAbstractVhIpcPart> part;
        bool reportedConnected = false;
        bool needsFirstGate = false;
        bool needsSecondGate = false;
    };

    void onTsoChanged();
    void onPartSendVh(const QHash<QString, QVariant> &map);
    void onPartReadyStateChanged(const QString &name, bool ready);
    void onPartRequiringServerChanged(bool requiring);

    bool isAllowed(const Part &record) const;
    /// The part that a message is meant for or comes from; null when the message may not pass.
    QSharedPointer<QtAbstractVhIpcPart> allowedPart(const QHash<QString, QVariant> &map) const;
    void reportConnectedStateToAll();
    void reportConnectedStateIfRequired(Part &record);
    void logPartReady(const QString &name, bool ready) const;
    void log(const QString &what, bool ready) const;

    const QSharedPointer<QtToggleSwitchObject> m_firstGate;
    const QSharedPointer<QtToggleSwitchObject> m_secondGate;
    QHash<QString, Part> m_parts;
};
