#include "qtappdefaultlogger.h"

#include <atomic>
#include <utility>

namespace {
std::atomic<QtAppLogger *> defaultLogger = nullptr;
}

QtAppLogger *QtAppDefaultLogger::instance() { return defaultLogger.load(); }

QtAppDefaultLogger::QtAppDefaultLogger(QtAppLogger::Options options) : m_logger(std::move(options))
{
    defaultLogger.store(&m_logger);
}

QtAppDefaultLogger::~QtAppDefaultLogger()
{
    QtAppLogger *own = &m_logger;
    defaultLogger.compare_exchange_strong(own, nullptr);
}

void logLine(int level, const QString &text)
{
    if (QtAppLogger *logger = QtAppDefaultLogger::instance())
        logger->log(level, text);
}

bool logsLevel(int level)
{
    const QtAppLogger *logger = QtAppDefaultLogger::instance();
    return logger && logger->logs(level);
}
