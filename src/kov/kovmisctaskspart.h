#pragma once

#include "qtabstractvhipcpart.h"

/// The application's end of "miscTasks". There is no window to activate, which the log is told.
class KovMiscTasksPart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    using QtAbstractVhIpcPart::QtAbstractVhIpcPart;

    void processVh(const QHash<QString, QVariant> &map) override;
};
