#include "qtapplogger.h"

#include "logsink.h"

#include <utility>

QtAppLogger::Options QtAppLogger::optionsFromEnvironment()
{
    Options options;
    bool ok = false;
    if (const int level = qEnvironmentVariableIntValue("KOVALO_LOG_LEVEL", &ok); ok)
        options.verbosityLevel = level;
    options.filePath = qEnvironmentVariable("KOVALO_LOG_FILE");
    return options;
}

QtAppLogger::QtAppLogger(Options options)
    : m_options(std::move(options)),
      m_sink(std::make_unique<LogSink>(m_options.filePath, m_options.rotateAtBytes))
{
}

QtAppLogger::~QtAppLogger() = default;

void QtAppLogger::log(int level, const QString &text)
{
    if (logs(level))
        m_sink->write(level, text);
}

bool QtAppLogger::logs(int level) const
{
    return m_options.verbosityLevel > 0 && level <= m_options.verbosityLevel;
}

int QtAppLogger::verbosityLevel() const { return m_options.verbosityLevel; }
