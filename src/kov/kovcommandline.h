#pragma once

#include <QString>
#include <QStringList>

/// What a command line asks for.
struct KovCommandLine {
    enum class Action {
        /// Print "output" and exit with "exitCode".
        Print,
        /// Be the service.
        Serve,
        /// Have the service carry out "words", and print what it answers.
        Ask,
        /// Show the downloads, which "words" ask for, in one of the ways below.
        ShowJobs,
        /// Open the path that the service answers.
        Open,
        /// Open the folder of that path.
        OpenFolder,
    };

    /// What kov exits with: a command that was not carried out, and one that makes no sense.
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

    /// The arguments without the name of the program.
    static KovCommandLine parse(const QStringList &arguments);
};
