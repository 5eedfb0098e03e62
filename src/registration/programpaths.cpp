#include "programpaths.h"

#include "shellquoted.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString ProgramPaths::host()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/wenativehost");
}

QString ProgramPaths::unpackedExtension()
{
    const QString folder =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../extension"));
    return QFileInfo::exists(folder + QStringLiteral("/manifest.json")) ? folder : QString();
}

QString ProgramPaths::ownCommand()
{
    const QString own = QCoreApplication::applicationFilePath();
    const QString name = QFileInfo(own).fileName();
    const QString called = QStandardPaths::findExecutable(name);
    return QFileInfo(called).canonicalFilePath() == own ? name : shellQuoted(own);
}
