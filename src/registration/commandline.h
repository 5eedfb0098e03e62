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
        /// The command failed, or (doctor) a download would not arrive.
        Failure = 1,
        UsageError = 2,
    };

    /// The arguments without the program's name.
    explicit CommandLine(QStringList arguments);

    /// Runs the command; returns the process's exit status.
    int run();

private:
    struct Command {
        QString name;
        /// Its arguments in the usage line.
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

    /// The named browsers, or all that are found. Nothing after an unknown name, which is reported.
    std::optional<QList<BrowserInstallation>> chosenBrowsers();
    /// The host to register, or nothing when it does not exist, which is reported.
    std::optional<QString> chosenHost();
    UserFolders folders() const;

    const QStringList m_arguments;
    QCommandLineParser m_parser;
    QString m_command;
    QStringList m_browsers;
};
