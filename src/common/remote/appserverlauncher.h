#pragma once

#include "qtabstractserverlauncher.h"

#include <QString>

class ServerProcess;

/**
 * Starts the main application in the background: the executable "kov" beside this one, with the
 * argument "-service". It runs on its own: in its own session, with none of this process's open
 * files, so that the browser does not take it for the host, and outlives it.
 *
 * A failed start is an error of the category "GenericError", code 1. A server that ends while this
 * object lives, and not with status 0, is logged with its last words.
 */
class AppServerLauncher : public QtAbstractServerLauncher {
    Q_OBJECT
public:
    /// Launching does not depend on the flag.
    explicit AppServerLauncher(bool flag, QObject *parent = nullptr);

    bool flag() const { return m_flag; }

    static QString serverBinaryPath();
    static bool serverBinaryExists();
    /// Whether it can be executed, too: if not, it is as good as not installed.
    static bool serverBinaryCanRun();

    /// Finished when it returns.
    void launchServer() override;

private:
    static void logEnd(const ServerProcess &process, int waitStatus, qint64 ranForMs);

    const bool m_flag;
};
