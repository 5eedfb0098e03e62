#pragma once

#include "abstracterror.h"

#include <QObject>

/// Starts the server once when asked to and tells how it went.
class QtAbstractServerLauncher : public QObject {
    Q_OBJECT
public:
    explicit QtAbstractServerLauncher(QObject *parent = nullptr) : QObject(parent) { }

    virtual void launchServer() = 0;

Q_SIGNALS:
    /// The end of each launchServer(), during it or later; code 0 means that it was started.
    void launchServerFinished(const AbstractError &error);
};
