#pragma once

#include <QList>
#include <QString>

#include <utility>

/**
 * Writes absolute paths in a form that survives moving a portable installation, and reads them
 * back.
 *
 * A path in or below one of three known folders is stored with that folder replaced by its tag:
 * "sysdownloadloc" (the user's downloads), "appdir" (where the executable is), "appdiskroot" (the
 * root of the executable's file system, unless that is "/"). They are tried in this order.
 * Immutable after construction: any thread. Needs the application object.
 */
class QtAppPortableModeSupport {
public:
    explicit QtAppPortableModeSupport(bool portable);

    /// The form to store; the path itself if not in portable mode or in none of the known folders.
    QString encodePath(const QString &path) const;
    /// The path from its stored form. Tags are replaced in portable mode or not; anything else is
    /// returned unchanged.
    QString decodePath(const QString &path) const;

private:
    void addLocation(QString directory, const QString &tag);

    const bool m_portable;
    /// Directory (without a trailing "/") and its tag.
    QList<std::pair<QString, QString>> m_locations;
};
