#pragma once

#include <QString>
#include <QStringList>

/// A parsed command line.
struct KovCommandLine {
    enum class Action {
        /// Print "output" and exit with "exitCode".
        Print,
        /// Run as the service.
        Serve,
        /// Send "words" to the service, and print its answer.
        Ask,
        /// Show the downloads, which "words" query, in one of the formats below.
        ShowJobs,
        /// Open the path in the service's answer.
        Open,
        /// Open the folder of that path.
        OpenFolder,
    };

    /// Exit codes: for a command that failed, and for wrong usage.
    static constexpr int failureExitCode = 1;
    static constexpr int usageErrorExitCode = 2;

    Action action = Action::Print;
    int exitCode = 0;
    QString output = {};
    QStringList words = {};
    /// Starts the service when it does not run.
    bool needsService = true;
    bool asJson = false;
    bool watches = false;

    /// The arguments without the program's name.
    static KovCommandLine parse(const QStringList &arguments);
};
