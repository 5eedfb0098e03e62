#pragma once

#include "qtappdefaultlogger.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

/// Installs a default logger for its lifetime, and returns the logged texts.
class LogCapture {
public:
    explicit LogCapture(int verbosityLevel = 1)
        : m_logger({.verbosityLevel = verbosityLevel, .filePath = m_dir.filePath(fileName())})
    {
    }

    /// The logged texts so far, without time, process id and level.
    QStringList texts() const
    {
        QFile file(m_dir.filePath(fileName()));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        static const QRegularExpression prefix(QStringLiteral("^\\S+ \\[\\d+\\] \\d+ "));
        QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        lines.replaceInStrings(prefix, QString());
        return lines;
    }

private:
    static QString fileName() { return QStringLiteral("log"); }

    QTemporaryDir m_dir;
    QtAppDefaultLogger m_logger;
};
