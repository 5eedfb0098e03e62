#pragma once

#include "browserinstallation.h"
#include "registrar.h"

#include <QCommandLineParser>
#include <QStringList>

#include <optional>

/// The commands of kovalo-host.
class CommandLine {
public:
    enum ExitStatus {
        Success = 0,
        /// It could not be done, or (doctor) a download would not arrive.
        Failure = 1,
        UsageError = 2,
    };

    /// Without the program's name.
    explicit CommandLine(QStringList arguments);

    /// Carries the command out; returns the process's exit status.
    int run();

private:
    struct Command {
        QString name;
        /// What stands behind it on the command line.
        QString arguments;
        QString summary;
        QString description;
        QList<QCommandLineOption> options;
        int (CommandLine::*carryOut)();
    };
    static QList<Command> commands();
    int runCommand(const Command &command);
    int usageError(const QString &text, const QString &command = {});

    int registerHost();
    int registerFlatpak();
    int unregisterHost();
    int listBrowsers();
    int runDoctor();

    /// Those that were named, or all that are found. Nothing when a name is unknown, which is said.
    std::optional<QList<BrowserInstallation>> chosenBrowsers();
    /// The host to register, or nothing when it is not there, which is said.
    std::optional<QString> chosenHost();
    UserFolders folders() const;

    const QStringList m_arguments;
    QCommandLineParser m_parser;
    QString m_command;
    QStringList m_browsers;
};
