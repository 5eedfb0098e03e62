#pragma once

#include "qtabstractvhipcpart.h"

#include <QString>

/// The part "miscTasks" of the link: one-way commands to the main application.
class VhIpcMiscTasksClient : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    explicit VhIpcMiscTasksClient(QObject *parent = nullptr);

    /// The name under which messages are dispatched to this part.
    static QString partName();

    /// Dropped silently while the link is down.
    void activateMainWindow();

    /// Ignored: the application sends no messages for this part.
    void processVh(const QHash<QString, QVariant> &map) override;
};
