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
    /// A path that is not empty turns portable mode on with that data directory, whether it exists
    /// or not. With an empty one, portable mode is on when this build supports it and there is a
    /// folder "portabledata" beside the executable.
    explicit PortableVersionManager(const QString &portableDataPath = {},
                                    QObject *parent = nullptr);

    /// Set by the build (option KOVALO_PORTABLE_MODE); off by default.
    static bool supportsPortableMode();

    bool isPortableMode() const { return m_portable; }
    /// Meaningful in portable mode only; QDir() before it was decided.
    QDir dataDir() const { return m_dataDir; }
    /// The same: a portable installation has one data directory for both roles.
    QDir localDataDir() const { return m_dataDir; }
    /// Where the executable is.
    QDir appRootDir() const { return m_appRootDir; }
    /// Null when portable mode is neither asked for nor supported.
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
