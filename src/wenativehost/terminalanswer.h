#pragma once

#include <QString>

#include <optional>

/**
 * The text for "--help" or "--version" on a terminal; nothing otherwise. Browsers pass other
 * arguments, and stdin and stdout are no terminal then.
 */
std::optional<QString> terminalAnswer(int argc, char *argv[]);
