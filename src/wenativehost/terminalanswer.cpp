#include "terminalanswer.h"

#include "appversion.h"

#include <unistd.h>

#include <string_view>

std::optional<QString> terminalAnswer(int argc, char *argv[])
{
    if (argc != 2 || (::isatty(STDIN_FILENO) == 0 && ::isatty(STDOUT_FILENO) == 0))
        return std::nullopt;
    const std::string_view argument = argv[1];
    if (argument == "--version")
        return QStringLiteral("wenativehost %1\n").arg(appVersion());
    if (argument != "--help")
        return std::nullopt;
    return QStringLiteral(
               "wenativehost %1: connects the Kovalo browser extension with the Kovalo download "
               "manager.\n\n"
               "Browsers start it by themselves; there is nothing to start by hand. It reads the\n"
               "extension's messages from stdin, answers on stdout, and ends with its input.\n\n"
               "  --buggybrowser   lengths of messages on stdin are decimal texts\n"
               "  --version        the version (at a terminal)\n"
               "  --help           this text (at a terminal)\n\n"
               "  KOVALO_LOG_LEVEL   0 nothing, 1 why something failed (default), 2, 3 each "
               "message\n"
               "  KOVALO_LOG_FILE    where to log instead of stderr\n")
        .arg(appVersion());
}
