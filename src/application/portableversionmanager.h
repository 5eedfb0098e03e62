#pragma once

#include <QDir>
#include <QObject>
#include <QSharedPointer>

class QtAppPortableModeSupport;

/**
 * Whether the program runs from a portable installation, and where that keeps its data.
 *
 * Needs the application object. Decides once, when constructed.
 */
class PortableVersionManager : public QObject {
    Q_OBJECT
public:
    /// A path that is not empty turns portable mode on with that data directory, whether or not it
    /// exists. With an empty one, portable mode is on if this build supports it and there is a
    /// folder "portabledata" beside the executable.
    explicit PortableVersionManager(const QString &portableDataPath = {},
                                    QObject *parent = nullptr);

    /// Set by the build (option KOVALO_PORTABLE_MODE); off by default.
    static bool supportsPortableMode();

    /// Where a portable installation in that folder keeps its data, whether or not it exists.
    static QDir dataDirIn(const QDir &appRootDir);

    bool isPortableMode() const { return m_portable; }
    /// Only meaningful in portable mode; otherwise QDir().
    QDir dataDir() const { return m_dataDir; }
    /// The same: a portable installation has one data directory for both roles.
    QDir localDataDir() const { return m_dataDir; }
    /// The executable's folder.
    QDir appRootDir() const { return m_appRootDir; }
    /// Null if portable mode is neither requested nor supported.
    QSharedPointer<QtAppPortableModeSupport> portableModeSupport() const
    {
        return m_portableModeSupport;
    }

    void initialize(const QString &portableDataPath);

private:
    bool m_portable = false;
    QDir m_appRootDir;
    QDir m_dataDir;
    QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
};
