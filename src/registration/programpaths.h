#pragma once

#include <QString>

/// The paths of this installation's programs.
namespace ProgramPaths {
/// The host beside this program.
QString host();
/// The extension's folder in an unpacked archive; empty elsewhere.
QString unpackedExtension();
/// How to run this program: its name if it is on the PATH, else its path.
QString ownCommand();
} // namespace ProgramPaths
