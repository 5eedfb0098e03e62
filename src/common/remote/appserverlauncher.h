#pragma once

#include "qtabstractserverlauncher.h"

#include <QString>

class ServerProcess;

/**
 * Starts the main application in the background: the executable "kov" beside this one, with the
 * argument "-service". It is detached: it has its own session and none of this process's open
 * files, so that it outlives this process, and the browser does not wait for it.
 *
 * A failed start is an error of the category "GenericError", code 1. If the server exits during the
 * lifetime of this object with a status other than 0, that is logged with the end of its output.
 */
class AppServerLauncher : public QtAbstractServerLauncher {
    Q_OBJECT
public:
    /// The flag does not affect launching.
    explicit AppServerLauncher(bool flag, QObject *parent = nullptr);

    bool flag() const { return m_flag; }

    /// That beside this program.
    static QString serverBinaryPath();
    /// That in a folder; an empty one is the current one.
    static QString serverBinaryPath(const QString &folder);
    /// The argument that makes it a service.
    static QString serviceArgument();
    static bool serverBinaryExists();
    /// Whether it exists and can be executed; if not, it counts as not installed.
    static bool serverBinaryCanRun();

    /// Synchronous.
    void launchServer() override;

private:
    static void logEnd(const ServerProcess &process, int waitStatus, qint64 ranForMs);

    const bool m_flag;
};
