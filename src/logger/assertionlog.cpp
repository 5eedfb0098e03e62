#include "assertionlog.h"

#include "qtappdefaultlogger.h"

namespace {

/// "/any/where/src/common/file.cpp" becomes "../../src/common/file".
QString sourceMark(const char *fileName)
{
    QString path = QString::fromUtf8(fileName);
    if (const auto dot = path.lastIndexOf(u'.'); dot > path.lastIndexOf(u'/'))
        path.truncate(dot);
    const auto src = path.lastIndexOf(u"/src/");
    return src < 0 ? path : QStringLiteral("../..") + path.mid(src);
}

} // namespace

void logAssertionFailed(const QString &expression, const QString &source, int line)
{
    logLine(1,
            QStringLiteral("ASSERTION FAILED: %1, %2,%3")
                .arg(expression, source, QString::number(line)));
}

bool checkOrLog(bool ok, const char *expression, const char *fileName, int line)
{
    if (!ok)
        logAssertionFailed(QString::fromUtf8(expression), sourceMark(fileName), line);
    return ok;
}
