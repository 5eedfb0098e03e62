#include "commandline.h"

#include "appversion.h"
#include "browserchain.h"
#include "browserpolicies.h"
#include "console.h"
#include "doctor.h"
#include "doctorreport.h"
#include "flatpaksandbox.h"
#include "manifestinspection.h"
#include "programpaths.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <utility>

namespace {

using Kind = BrowserInstallation::Kind;
using Way = BrowserInstallation::Way;

QCommandLineOption rootOption()
{
    return {QStringLiteral("root"),
            QStringLiteral("Look for the folders that hold for everybody (/etc, /usr, /var) in "
                           "FOLDER instead of /."),
            QStringLiteral("FOLDER")};
}

QCommandLineOption everybodyOption()
{
    return {QStringLiteral("everybody"),
            QStringLiteral("For every user of this machine, in the folders of the browsers that "
                           "have one. Only root can do that.")};
}

QCommandLineOption allOption()
{
    return {QStringLiteral("all"),
            QStringLiteral("Every browser that is found, those in a Flatpak too.")};
}

QString ordinaryWayText()
{
    return QStringLiteral("starts hosts outside of its sandbox; the ordinary manifest does");
}

/// Prints the results; returns whether all succeeded.
bool printResults(const QString &title, const QList<Registrar::Result> &results)
{
    using Done = Registrar::Result::Done;
    static const QMap<Done, QString> verbs{{Done::Written, QStringLiteral("wrote")},
                                           {Done::Unchanged, QStringLiteral("unchanged")},
                                           {Done::Removed, QStringLiteral("removed")},
                                           {Done::LeftAlone, QStringLiteral("left alone")},
                                           {Done::Failed, QStringLiteral("could not change")}};
    bool allDone = true;
    for (const Registrar::Result &each : results) {
        QString line = QStringLiteral("%1: %2 %3").arg(title, verbs[each.done], each.path);
        if (!each.reason.isEmpty())
            line += QStringLiteral(": ") + each.reason;
        const bool hasFailed = each.done == Done::Failed;
        (hasFailed ? Console::printError : Console::print)(line);
        allDone = allDone && !hasFailed;
    }
    return allDone;
}

void printPermissionHint(const BrowserInstallation &installation)
{
    Console::print(
        QStringLiteral("%1 may not start programs outside of its sandbox by itself. To allow it:\n"
                       "    %2\n"
                       "It may then start any program as you, not only this host: pages that break "
                       "out of the browser could do the same. Restart the browser afterwards.")
            .arg(installation.title(), FlatpakSandbox::grantCommand(installation.id())));
}

QString registrationOf(const BrowserInstallation &installation)
{
    if (!installation.found())
        return QStringLiteral("-");
    const bool withUsers = BrowserPolicies::read(installation).userManifestsForbiddenBy.isEmpty();
    const ManifestInspection manifest(installation, wayNow(installation), withUsers);
    if (installation.way() == Way::None)
        return QStringLiteral("cannot work: its Snap starts no programs outside");
    if (!manifest.found())
        return QStringLiteral("no");
    if (!manifest.isIntact())
        return QStringLiteral("broken: ") + manifest.firstFault();
    return manifest.isForEverybody() ? QStringLiteral("for everybody") : QStringLiteral("yes");
}

} // namespace

CommandLine::CommandLine(QStringList arguments) : m_arguments(std::move(arguments)) { }

QList<CommandLine::Command> CommandLine::commands()
{
    const QString browsers = QStringLiteral("[BROWSER...]");
    const QString which =
        QStringLiteral("BROWSER is an id as \"kovalo-host browsers\" lists them. "
                       "Without one, all that are found outside of sandboxes.\n\n");
    return {
        {QStringLiteral("register"),
         browsers,
         QStringLiteral("let browsers find the host"),
         QStringLiteral("Writes the manifests by which this user's browsers find the host. What is "
                        "right already is not touched.\n\n")
             + which
             + QStringLiteral("Exit status: 0 when all is registered, 1 when something could not "
                              "be, 2 after a wrong command line."),
         {allOption(),
          {QStringLiteral("host"),
           QStringLiteral("The host's executable. By default the one beside this program."),
           QStringLiteral("PATH")},
          {QStringLiteral("flatpak"),
           QStringLiteral("For the browser in the Flatpak ID: writes into its folder a script that "
                          "starts the host outside of the sandbox, and tells which permission that "
                          "needs. Never grants it."),
           QStringLiteral("ID")},
          everybodyOption(),
          rootOption()},
         &CommandLine::registerHost},
        {QStringLiteral("unregister"),
         browsers,
         QStringLiteral("take that back"),
         QStringLiteral("Removes the manifests, and the scripts for Flatpaks, that \"register\" "
                        "writes. Files that are not ours stay.\n\n")
             + which
             + QStringLiteral("Exit status: 0 when nothing of ours is left, 1 when something could "
                              "not be removed, 2 after a wrong command line."),
         {allOption(), everybodyOption(), rootOption()},
         &CommandLine::unregisterHost},
        {QStringLiteral("browsers"),
         {},
         QStringLiteral("list the browsers that are known"),
         QStringLiteral(
             "Lists the browsers that are known: whether this user has them, and whether "
             "they find the host.\n\nExit status: 0, or 2 after a wrong command line."),
         {rootOption()},
         &CommandLine::listBrowsers},
        {QStringLiteral("doctor"),
         browsers,
         QStringLiteral("say why a download does not arrive"),
         QStringLiteral(
             "Walks the way of a download from the browser to the finished file and says of each "
             "link whether it holds, and what mends it. Starts the host as a browser does, and the "
             "application when it is not running, as the first download would.\n\n"
             "BROWSER is an id as \"kovalo-host browsers\" lists them. Without one, all that are "
             "found.\n\n"
             "Exit status: 0 when a download would arrive from each of the browsers, 1 when a link "
             "is broken, 2 after a wrong command line."),
         {{QStringLiteral("json"),
           QStringLiteral("For programs and bug reports: nothing in it tells who you are.")},
          {QStringLiteral("fix"), QStringLiteral("Mend first what needs no decision of yours.")},
          {QStringLiteral("timeout"),
           QStringLiteral(
               "How long the host and the application may take to answer; 5 by default."),
           QStringLiteral("SECONDS"), QStringLiteral("5")},
          rootOption()},
         &CommandLine::runDoctor},
    };
}

int CommandLine::run()
{
    const QList<Command> all = commands();
    const QString name = m_arguments.value(0);
    for (const Command &each : all) {
        if (each.name == name)
            return runCommand(each);
    }
    if (name == u"--version") {
        Console::print(QStringLiteral("kovalo-host ") + appVersion());
        return Success;
    }
    if (name != u"--help" && name != u"-h" && name != u"help")
        return usageError(name.isEmpty() ? QStringLiteral("which command?")
                                         : QStringLiteral("unknown command: ") + name);
    Console::print(QStringLiteral("Usage: kovalo-host COMMAND\n\n"
                                  "Lets browsers find the Kovalo native messaging host, and says "
                                  "why a download does not\narrive.\n\nCommands:"));
    QList<QStringList> rows;
    for (const Command &each : all)
        rows.append({QStringLiteral("  ") + each.name, each.summary});
    Console::printTable(rows);
    Console::print(QStringLiteral("\n\"kovalo-host COMMAND --help\" tells more of each. "
                                  "\"kovalo-host --version\" tells the version.\n"
                                  "Exit status: 0 when all is well, 1 when something is not, 2 "
                                  "after a wrong command line."));
    return Success;
}

int CommandLine::runCommand(const Command &command)
{
    m_command = command.name;
    m_parser.setApplicationDescription(u'\n' + Console::wrapped(command.description));
    m_parser.addOptions(command.options);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("This text."));
    m_parser.addOption(help);
    if (!m_parser.parse(QStringList(QStringLiteral("kovalo-host")) + m_arguments))
        return usageError(m_parser.errorText(), m_command);
    if (m_parser.isSet(help)) {
        QString text = m_parser.helpText();
        // Qt's usage line would show the program's path and no commands.
        text.replace(0, text.indexOf(u'\n'),
                     QStringLiteral("Usage: kovalo-host %1 [options] %2")
                         .arg(command.name, command.arguments)
                         .trimmed());
        Console::print(text.trimmed());
        return Success;
    }
    m_browsers = m_parser.positionalArguments().mid(1);
    const QStringList given = m_parser.optionNames();
    const QStringList choices = {QStringLiteral("everybody"), QStringLiteral("all"),
                                 QStringLiteral("flatpak")};
    const auto chosen = std::count_if(choices.cbegin(), choices.cend(),
                                      [&given](const auto &each) { return given.contains(each); });
    if (chosen > 1)
        return usageError(QStringLiteral("--everybody, --all and --flatpak exclude each other: run "
                                         "the command once for each"),
                          m_command);
    if (given.contains(choices.constFirst()) && !m_browsers.isEmpty())
        return usageError(QStringLiteral("--everybody is for all browsers: name none"), m_command);
    if (command.arguments.isEmpty() && !m_browsers.isEmpty())
        return usageError(QStringLiteral("what is \"%1\"?").arg(m_browsers.constFirst()),
                          m_command);
    return (this->*command.carryOut)();
}

int CommandLine::usageError(const QString &text, const QString &command)
{
    Console::printError(text);
    Console::printError(QStringLiteral("see kovalo-host %1--help")
                            .arg(command.isEmpty() ? QString() : command + u' '));
    return UsageError;
}

int CommandLine::registerHost()
{
    const auto host = chosenHost();
    if (!host)
        return Failure;
    const Registrar registrar(*host);
    if (m_parser.isSet(QStringLiteral("everybody")))
        return printResults(QStringLiteral("Everybody"), registrar.registerForEverybody(folders()))
            ? Success
            : Failure;
    if (m_parser.isSet(QStringLiteral("flatpak")))
        return registerFlatpak();
    const auto browsers = chosenBrowsers();
    if (!browsers)
        return UsageError;

    bool allDone = true;
    for (const BrowserInstallation &each : *browsers) {
        if (!each.found()) {
            Console::printError(
                QStringLiteral("%1 is not found: start it once, then try again").arg(each.title()));
            allDone = false;
        } else if (each.way() == Way::None) {
            Console::printError(
                QStringLiteral("%1 cannot work: a Snap starts no programs outside of "
                               "it. Take the browser from a package instead")
                    .arg(each.title()));
            allDone = false;
        } else {
            if (each.way() == Way::Script)
                printPermissionHint(each);
            else if (each.kind() != Kind::Native)
                Console::print(each.title() + u' ' + ordinaryWayText());
            allDone = printResults(each.title(), registrar.registerHost(each)) && allDone;
        }
    }
    return allDone ? Success : Failure;
}

int CommandLine::registerFlatpak()
{
    const QString id = m_parser.value(QStringLiteral("flatpak"));
    const QList<BrowserInstallation> all = BrowserInstallation::all(folders());
    const auto wanted = std::find_if(all.cbegin(), all.cend(), [&id](const auto &each) {
        return each.kind() == Kind::Flatpak && each.id() == id;
    });
    if (wanted == all.cend() || !m_browsers.isEmpty())
        return usageError(QStringLiteral("no browser is known that comes as the Flatpak ") + id,
                          m_command);
    if (!wanted->found()) {
        Console::printError(
            QStringLiteral("%1 is not found: start it once, then try again").arg(wanted->title()));
        return Failure;
    }
    const auto host = chosenHost();
    const bool allDone =
        host && printResults(wanted->title(), Registrar(*host).registerScript(*wanted));
    printPermissionHint(*wanted);
    return allDone ? Success : Failure;
}

int CommandLine::unregisterHost()
{
    if (m_parser.isSet(QStringLiteral("everybody")))
        return printResults(QStringLiteral("Everybody"),
                            Registrar::unregisterForEverybody(folders()))
            ? Success
            : Failure;
    const auto browsers = chosenBrowsers();
    if (!browsers)
        return UsageError;
    bool allDone = true;
    for (const BrowserInstallation &each : *browsers)
        allDone = printResults(each.title(), Registrar::unregister(each)) && allDone;
    return allDone ? Success : Failure;
}

int CommandLine::listBrowsers()
{
    QList<BrowserInstallation> all = BrowserInstallation::all(folders());
    std::stable_sort(all.begin(), all.end(), [](const auto &one, const auto &other) {
        return one.found() > other.found();
    });
    QList<QStringList> rows = {{QStringLiteral("BROWSER"), QStringLiteral("ID"),
                                QStringLiteral("KIND"), QStringLiteral("FOUND"),
                                QStringLiteral("REGISTERED")}};
    for (const BrowserInstallation &each : std::as_const(all))
        rows.append({each.browser().name, each.id(), each.kindName(),
                     each.found() ? QStringLiteral("yes") : QStringLiteral("no"),
                     registrationOf(each)});
    Console::printTable(rows);
    return Success;
}

int CommandLine::runDoctor()
{
    bool isNumber = false;
    const double seconds = m_parser.value(QStringLiteral("timeout")).toDouble(&isNumber);
    if (!isNumber || seconds <= 0 || seconds > 3600)
        return usageError(QStringLiteral("--timeout takes a number of seconds"), m_command);
    const auto browsers = chosenBrowsers();
    if (!browsers)
        return UsageError;
    Doctor doctor(*browsers, static_cast<int>(seconds * 1000));
    doctor.examine();
    if (m_parser.isSet(QStringLiteral("fix")) && doctor.repair())
        doctor.examine();
    const DoctorReport report(doctor);
    Console::print(m_parser.isSet(QStringLiteral("json")) ? report.json() : report.text());
    return doctor.wouldDownloadArrive() ? Success : Failure;
}

std::optional<QList<BrowserInstallation>> CommandLine::chosenBrowsers()
{
    const QList<BrowserInstallation> all = BrowserInstallation::all(folders());
    QList<BrowserInstallation> chosen;
    if (m_browsers.isEmpty()) {
        const bool withSandboxes = m_command == u"doctor" || m_parser.isSet(QStringLiteral("all"));
        std::copy_if(all.cbegin(), all.cend(), std::back_inserter(chosen),
                     [withSandboxes](const BrowserInstallation &each) {
                         return each.found() && (withSandboxes || each.way() == Way::Ordinary);
                     });
        return chosen;
    }
    for (const QString &name : std::as_const(m_browsers)) {
        const auto called = std::find_if(all.cbegin(), all.cend(),
                                         [&name](const auto &each) { return each.isCalled(name); });
        if (called == all.cend()) {
            usageError(QStringLiteral("unknown browser: %1 (see kovalo-host browsers)").arg(name),
                       m_command);
            return std::nullopt;
        }
        chosen.append(*called);
    }
    return chosen;
}

std::optional<QString> CommandLine::chosenHost()
{
    const QString named = m_parser.value(QStringLiteral("host"));
    const QString path =
        named.isEmpty() ? ProgramPaths::host() : QFileInfo(named).absoluteFilePath();
    // In a package's staging folder the host is not at its final path yet.
    if (m_parser.isSet(QStringLiteral("root")))
        return path;
    if (QFileInfo info(path); info.isFile() && info.isExecutable())
        return path;
    Console::printError(QStringLiteral("there is no host that can be executed at ") + path);
    return std::nullopt;
}

UserFolders CommandLine::folders() const
{
    const QString root = m_parser.value(QStringLiteral("root"));
    return UserFolders::ofThisUser(root.isEmpty() ? QString() : QDir(root).absolutePath());
}
