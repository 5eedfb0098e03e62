#pragma once

#include "qtabstractvhipcpart.h"

#include <QString>
#include <QStringList>

/// The command line's part of the link: sends a command and receives its result.
class KovCommandClientPart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    using QtAbstractVhIpcPart::QtAbstractVhIpcPart;

    void sendCommand(const QStringList &arguments);
    void processVh(const QHash<QString, QVariant> &map) override;

Q_SIGNALS:
    void done(int exitCode, const QString &output);
};
