#pragma once

#include "qtabstractvhipcpart.h"

#include <QHash>
#include <QSharedPointer>

class QtToggleSwitchObject;

/**
 * Lets several parts share one link: a message is dispatched to the part whose name it has under
 * the key "name". Messages for unknown parts, and those blocked by a closed gate, are dropped
 * silently.
 *
 * A part may depend on two gates. It is notified of a connection only once its gates are open; a
 * gate that closes later blocks its messages, but does not notify it of a disconnection.
 *
 * Ready when all parts are; requires the server when any part does.
 */
class QtVhIpcCompositePart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    /// A missing gate counts as open.
    QtVhIpcCompositePart(const QSharedPointer<QtToggleSwitchObject> &firstGate,
                         const QSharedPointer<QtToggleSwitchObject> &secondGate,
                         QObject *parent = nullptr);

    /// A second part with the same name is ignored.
    void addPart(const QString &name, const QSharedPointer<QtAbstractVhIpcPart> &part,
                 bool needsFirstGate, bool needsSecondGate);
    /// Null if there is none of that name.
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
    /// The part that receives or sent a message; null if the message is blocked.
    QSharedPointer<QtAbstractVhIpcPart> allowedPart(const QHash<QString, QVariant> &map) const;
    void reportConnectedStateToAll();
    void reportConnectedStateIfRequired(Part &record);
    void logPartReady(const QString &name, bool ready) const;
    void log(const QString &what, bool ready) const;

    const QSharedPointer<QtToggleSwitchObject> m_firstGate;
    const QSharedPointer<QtToggleSwitchObject> m_secondGate;
    QHash<QString, Part> m_parts;
};
