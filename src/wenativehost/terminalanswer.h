#pragma once

#include <QString>

#include <optional>

/**
 * The text for "--help" or "--version" on a terminal; nothing otherwise. Browsers pass other
 * arguments and no terminal.
 */
std::optional<QString> terminalAnswer(int argc, char *argv[]);
