#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// A host, tried as a browser does.
class HostProbe {
public:
    /// "timeoutMs" is how long it may take to answer.
    HostProbe(QString hostPath, int timeoutMs);

    /// The shared libraries that the program asks for and the system does not have.
    QStringList missingLibraries() const;

    struct Handshake {
        /// Empty when it answered.
        QString failure;
        /// From the start of the process to the answer.
        qint64 milliseconds = 0;
        /// What it told.
        QString version;
        /// Whether downloads are to be caught; nothing when it did not tell.
        std::optional<bool> isCatching;
    };
    /// Starts the host with a browser's arguments, and has it answer a handshake, tell its settings
    /// and end.
    Handshake handshake(const QStringList &arguments) const;

private:
    const QString m_hostPath;
    const int m_timeoutMs;
};
