#include "appversion.h"

namespace {
constexpr int versionMajor = 6;
constexpr int versionMinor = 25;
constexpr int versionPatch = 0;
constexpr int versionBuild = 6016;
} // namespace

QString appVersion()
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(QString::number(versionMajor), QString::number(versionMinor),
             QString::number(versionPatch), QString::number(versionBuild));
}

bool mobileVersion() { return false; }
