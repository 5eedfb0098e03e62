#include "qtapplogger.h"

#include "logsink.h"

#include <QByteArray>
#include <QDateTime>

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace {

bool isControl(QChar character) { return character < u' ' || character == u'\x7f'; }

/// The text without line breaks and what else would confuse a reader of the log: texts come from
/// outside too.
QString asOneLine(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), isControl))
        return text;
    QString line;
    for (const QChar character : text) {
        if (character == u'\n')
            line += QStringLiteral("\\n");
        else if (isControl(character))
            line += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QChar(u'0'));
        else
            line += character;
    }
    return line;
}

} // namespace

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
    if (m_options.verbosityLevel <= 0 || level > m_options.verbosityLevel)
        return;
    const QString line =
        QStringLiteral("%1 [%2] %3 %4\n")
            .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs),
                 QString::number(::getpid()), QString::number(level), asOneLine(text));
    m_sink->write(line.toUtf8());
}

int QtAppLogger::verbosityLevel() const { return m_options.verbosityLevel; }
