#pragma once

#include "qtqobjectstracker.h"

#include <QSharedPointer>

#include <utility>

/// Registers an object with the process's tracker, if there is one, under its class name.
template <typename T> void qtTrackObject(T *object)
{
    if (QtQObjectsTracker *tracker = QtQObjectsTracker::instance())
        tracker->registerObject(object, T::staticMetaObject.className());
}

/// Creates a long-lived object, without a parent, and registers it with the objects tracker.
template <typename T, typename... Args> QSharedPointer<T> qtCreateObject(Args &&...args)
{
    auto object = QSharedPointer<T>::create(std::forward<Args>(args)...);
    qtTrackObject(object.data());
    return object;
}
