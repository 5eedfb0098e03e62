#pragma once

#include <QString>

/// Where the programs of this installation are.
namespace ProgramPaths {
/// The host beside this program.
QString host();
/// How a user calls this program: by its name where that is enough.
QString ownCommand();
} // namespace ProgramPaths
