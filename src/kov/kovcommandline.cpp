#include "kovcommandline.h"

#include "appserverlauncher.h"
#include "appversion.h"

#include <QCommandLineParser>

#include <algorithm>
#include <iterator>

namespace {

using Action = KovCommandLine::Action;

constexpr int anyNumber = -1;

struct Command {
    QStringView name;
    /// As in the usage line; empty for none.
    QStringView arguments;
    /// One line, for the list of commands.
    QStringView summary;
    /// Further lines of the help text.
    QStringView details;
    int minArguments = 0;
    int maxArguments = 0;
    Action action = Action::Ask;
    bool needsService = true;
};

constexpr QStringView idsArgument = u"ID… | all";

constexpr Command commands[] = {
    {u"add", u"URL…", u"add downloads",
     u"Prints the number of each download and its URL. The service is started when it does not "
     u"run; "
     u"the downloads go on when this command has ended.",
     1, anyNumber},
    {u"jobs", u"", u"show the downloads",
     u"On a terminal, a line for each download with its progress, speed and the time that is left. "
     u"Elsewhere, lines with tabs between: number, state (waiting, running, paused, finished, "
     u"failed), bytes received, bytes in all (-1: unknown), path, URL, error.",
     0, 0, Action::ShowJobs},
    {u"pause", idsArgument, u"stop downloads until they are resumed", u"", 1, anyNumber},
    {u"resume", idsArgument, u"go on with paused downloads",
     u"Failed ones are tried again, too, and those that wait for their next attempt do not wait "
     u"any "
     u"longer. \"all\" means all that are paused.",
     1, anyNumber},
    {u"retry", idsArgument, u"try failed downloads again",
     u"What was posted is sent once more. \"all\" means all that have failed.", 1, anyNumber},
    {u"remove", idsArgument, u"take downloads off the list",
     u"Ends those that are under way and removes what there is of their files. Finished files stay "
     u"unless --file is given. \"all\" means all that have finished.",
     1, anyNumber},
    {u"open", u"ID", u"open the file of a finished download",
     u"With the program that the desktop has for such files.", 1, 1, Action::Open},
    {u"folder", u"[ID]", u"open the folder of a download",
     u"Without a number, the folder into which downloads go.", 0, 1, Action::OpenFolder},
    {u"set", u"NAME VALUE", u"change a setting", u"", 2, 2, Action::Ask, false},
    {u"get", u"NAME", u"print a setting", u"", 1, 1, Action::Ask, false},
    {u"list", u"", u"print all settings, NAME=VALUE", u"", 0, 0, Action::Ask, false},
    {u"quit", u"", u"end the service", u"Downloads that are under way go on when it starts again.",
     0, 0, Action::Ask, false},
};

QString overview()
{
    QString text =
        QStringLiteral("Usage: kov COMMAND [ARGUMENT…]\n"
                       "The Kovalo download service and its command line.\n\nCommands:\n");
    for (const Command &command : commands)
        text +=
            QStringLiteral("  %1 %2\n")
                .arg(QStringLiteral("%1 %2").arg(command.name, command.arguments).leftJustified(20),
                     command.summary);
    return text
        + QStringLiteral("\n"
                         "  -service              be the service: hosts start it on demand\n"
                         "  --help, --version\n\n"
                         "\"kov COMMAND --help\" tells more of a command.\n"
                         "Exit status: 0 done, 1 not done, 2 wrong usage.\n");
}

KovCommandLine print(int exitCode, const QString &text)
{
    return {.action = Action::Print, .exitCode = exitCode, .output = text};
}

KovCommandLine usageError(const QString &reason, const Command *command = nullptr)
{
    const QString help =
        command ? QStringLiteral("kov %1 --help").arg(command->name) : QStringLiteral("kov --help");
    return print(KovCommandLine::usageErrorExitCode,
                 QStringLiteral("kov: %1\nSee \"%2\".\n").arg(reason, help));
}

/// Parses the arguments of one command; on an error "line" prints it.
void parseArguments(const QStringList &arguments, const Command &command, KovCommandLine &line)
{
    const QCommandLineOption help({u"h"_qs, u"help"_qs}, u"Show this help."_qs);
    const QCommandLineOption json(u"json"_qs, u"Print all that is known, as a JSON array."_qs);
    const QCommandLineOption watch({u"w"_qs, u"watch"_qs},
                                   u"Go on until no download is under way."_qs);
    const QCommandLineOption stream(
        u"stream"_qs,
        u"Save what playlists (HLS, DASH) describe, each as one file; takes ffmpeg."_qs);
    const QCommandLineOption file(u"file"_qs, u"Remove finished files as well."_qs);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("%1%2.%3").arg(
        command.summary.left(1).toString().toUpper(), command.summary.mid(1),
        command.details.isEmpty() ? QString() : u'\n' + command.details.toString()));
    parser.addOption(help);
    if (command.action == Action::ShowJobs)
        parser.addOptions({json, watch});
    if (command.name == u"remove")
        parser.addOption(file);
    if (command.name == u"add")
        parser.addOption(stream);
    const bool understood = parser.parse(QStringList(u"kov"_qs) + arguments);
    if (understood && parser.isSet(help)) {
        QString text = parser.helpText();
        // Qt's usage line would show the program's path and no commands.
        text.replace(0, text.indexOf(u'\n'),
                     QStringLiteral("Usage: kov %1 [options] %2")
                         .arg(command.name, command.arguments)
                         .trimmed());
        line = print(0, text);
        return;
    }
    const QStringList words = parser.positionalArguments();
    if (!understood) {
        line = usageError(parser.errorText(), &command);
        return;
    }
    if (words.size() < command.minArguments
        || (command.maxArguments != anyNumber && words.size() > command.maxArguments)) {
        line = usageError(QStringLiteral("%1 takes %2")
                              .arg(command.name,
                                   command.arguments.isEmpty() ? u"no arguments"_qs
                                                               : command.arguments.toString()),
                          &command);
        return;
    }
    line.words = QStringList(command.name.toString()) + words;
    line.asJson = command.action == Action::ShowJobs && parser.isSet(json);
    line.watches = command.action == Action::ShowJobs && parser.isSet(watch);
    if (command.name == u"remove" && parser.isSet(file))
        line.words.replace(0, QStringLiteral("removeWithFile"));
    if (command.name == u"add" && parser.isSet(stream))
        line.words.replace(0, QStringLiteral("addStream"));
}

} // namespace

KovCommandLine KovCommandLine::parse(const QStringList &arguments)
{
    const QString name = arguments.value(0);
    if (name == AppServerLauncher::serviceArgument() && arguments.size() == 1)
        return {.action = Action::Serve};
    if (name == u"--version" || name == u"-v")
        return print(0, QStringLiteral("kov %1\n").arg(appVersion()));
    if (name == u"--help" || name == u"-h" || name == u"help")
        return print(0, overview());
    if (name.isEmpty())
        return print(usageErrorExitCode, overview());
    const auto *const command =
        std::find_if(std::begin(commands), std::end(commands),
                     [&name](const Command &each) { return each.name == name; });
    if (command == std::end(commands))
        return usageError(QStringLiteral("there is no command \"%1\"").arg(name));
    KovCommandLine line{.action = command->action, .needsService = command->needsService};
    parseArguments(arguments.mid(1), *command, line);
    return line;
}
