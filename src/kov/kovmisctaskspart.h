#pragma once

#include "qtabstractvhipcpart.h"

/// The application's end of "miscTasks". The service has no window to activate; it only logs this.
class KovMiscTasksPart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    using QtAbstractVhIpcPart::QtAbstractVhIpcPart;

    void processVh(const QHash<QString, QVariant> &map) override;
};
