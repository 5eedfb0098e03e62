#pragma once

#include "qtapplogger.h"

/**
 * The process-wide logger.
 *
 * Set once before other threads start, and unset after they have ended; in between, instance() may
 * be called from any thread.
 */
class QtAppDefaultLogger {
public:
    /// May be null: nothing is logged then.
    static QtAppLogger *instance();

    /// Makes the logger the default one during the lifetime of this object.
    explicit QtAppDefaultLogger(QtAppLogger::Options options);
    ~QtAppDefaultLogger();
    Q_DISABLE_COPY_MOVE(QtAppDefaultLogger)

private:
    QtAppLogger m_logger;
};

/// Logs through the default logger, if there is one. Any thread. Level 1 explains
/// failures, 2 is what the program does, 3 each message. Whatever the level, a
/// line holds no cookies, headers, file names, or paths and queries of URLs, and
/// is in English.
void logLine(int level, const QString &text);

/// Whether logLine() writes lines of that level.
bool logsLevel(int level);
