#pragma once

#include <QString>

/// The paths of this installation's programs.
namespace ProgramPaths {
/// The host beside this program.
QString host();
/// How to repair the host beside this program; empty if it can be executed.
QString hostRepair();
/// The extension's folder in an unpacked archive; empty elsewhere.
QString unpackedExtension();
/// The extension's folder of the package; empty without it.
QString packagedExtension();
/// How to run this program: its name if it is on the PATH, else its path.
QString ownCommand();
} // namespace ProgramPaths
