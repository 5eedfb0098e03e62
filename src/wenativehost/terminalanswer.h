#pragma once

#include <QString>

#include <optional>

/**
 * What a person at a terminal who asks with "--help" or "--version" is told; nothing for anybody
 * else. A browser, which gives its own arguments and no terminal, is never taken for a person.
 */
std::optional<QString> terminalAnswer(int argc, char *argv[]);
