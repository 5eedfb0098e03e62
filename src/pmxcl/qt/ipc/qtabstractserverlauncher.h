#pragma once

#include "abstracterror.h"

#include <QObject>

/// Starts the server on request, and reports the result.
class QtAbstractServerLauncher : public QObject {
    Q_OBJECT
public:
    explicit QtAbstractServerLauncher(QObject *parent = nullptr) : QObject(parent) { }

    virtual void launchServer() = 0;

Q_SIGNALS:
    /// The result of each launchServer(), during the call or later; code 0 means started.
    void launchServerFinished(const AbstractError &error);
};
