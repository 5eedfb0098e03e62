#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Starts a host as a browser does.
class HostProbe {
public:
    /// "timeoutMs" limits the wait for an answer.
    HostProbe(QString hostPath, int timeoutMs);

    /// The shared libraries that the program needs and the system lacks.
    QStringList missingLibraries() const;

    struct Handshake {
        /// Empty when it answered.
        QString failure;
        /// From the start of the process to the answer.
        qint64 milliseconds = 0;
        /// From the answer.
        QString version;
        /// Whether the option to catch downloads is on; nothing if unknown.
        std::optional<bool> isCatching;
    };
    /// Starts the host with a browser's arguments, requests a handshake and the settings, and ends
    /// it.
    Handshake handshake(const QStringList &arguments) const;

private:
    const QString m_hostPath;
    const int m_timeoutMs;
};
