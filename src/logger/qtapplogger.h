#pragma once

#include <QString>
#include <memory>

class LogSink;

/**
 * Writes log lines, each with its time (ISO 8601, UTC, milliseconds), process id and level.
 *
 * Lines go to stderr, which browsers keep for a native messaging host, or to a file. Never to
 * stdout: that is the message channel. Any thread. Failures of the log never affect the host: lines
 * that cannot be written, or that nobody reads, are dropped silently, and so are all lines when the
 * destination is stdout's own pipe or file.
 */
class QtAppLogger {
public:
    struct Options {
        /// Lines of a higher level are dropped; 0 drops all.
        int verbosityLevel = 1;
        /// Empty: stderr. Otherwise appended to; created with its folder, mode 0600. A file with
        /// another owner or mode, or a link, is not used: the log goes to stderr then.
        QString filePath;
        /// The size in bytes at which the file is rotated to "<filePath>.1" (replacing an older
        /// one) and begun anew.
        qint64 rotateAtBytes = qint64{5} * 1024 * 1024;
    };

    /// The options from the environment: KOVALO_LOG_LEVEL and KOVALO_LOG_FILE.
    static Options optionsFromEnvironment();

    explicit QtAppLogger(Options options);
    ~QtAppLogger();
    Q_DISABLE_COPY_MOVE(QtAppLogger)

    /// Writes one line; line breaks and other control characters are written as "\n", "\x1b".
    /// Level 1 is what is logged by default, higher levels are more detailed.
    void log(int level, const QString &text);
    /// Whether lines of that level are written, to avoid formatting texts that are not.
    bool logs(int level) const;
    int verbosityLevel() const;

private:
    const Options m_options;
    const std::unique_ptr<LogSink> m_sink;
};
