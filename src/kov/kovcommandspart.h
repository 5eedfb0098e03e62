#pragma once

#include "qtabstractvhipcpart.h"

#include <QSharedPointer>

class KovCommands;

/// Takes commands from the link and answers with their results.
class KovCommandsPart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    explicit KovCommandsPart(QSharedPointer<KovCommands> commands, QObject *parent = nullptr);

    void processVh(const QHash<QString, QVariant> &map) override;

private:
    const QSharedPointer<KovCommands> m_commands;
};
