#pragma once

#include <QString>
#include <memory>

/**
 * Writes log lines, each with its time (ISO 8601, UTC, milliseconds), process id and level.
 *
 * Lines go to stderr, which browsers keep for a native messaging host, or to a file. Never to
 * stdout: that is the message channel. May be called from any thread. A destination that cannot be
 * written is given up silently, since nothing that the log meets may disturb the host.
 */
class QtAppLogger {
public:
    struct Options {
        /// Lines of a higher level are dropped; 0 drops all.
        int verbosityLevel = 1;
        /// Empty: stderr. Otherwise appended to; created with its folder, mode 0600.
        QString filePath;
        /// The size in bytes at which the file is renamed to "<filePath>.1" (replacing an older
        /// one) and begun anew.
        qint64 rotateAtBytes = 5 * 1024 * 1024;
    };

    /// The options that the environment asks for: KOVALO_LOG_LEVEL and KOVALO_LOG_FILE.
    static Options optionsFromEnvironment();

    explicit QtAppLogger(Options options);
    ~QtAppLogger();
    Q_DISABLE_COPY_MOVE(QtAppLogger)

    /// Writes one line. Level 1 is what is logged by default, higher levels are more detailed.
    void log(int level, const QString &text);
    int verbosityLevel() const;

private:
    class Sink;
    const Options m_options;
    const std::unique_ptr<Sink> m_sink;
};
