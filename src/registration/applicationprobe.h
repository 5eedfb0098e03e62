#pragma once

#include <QString>

/// Queries the application over its socket, as the host does.
class ApplicationProbe {
public:
    struct Answer {
        enum class Outcome {
            Answered,
            /// No server listens on the socket.
            NotRunning,
            /// The server runs as another user.
            OfAnotherUser,
            /// It accepted the connection, but did not answer.
            Silent,
        };
        Outcome outcome = Outcome::NotRunning;
        /// The path of the socket.
        QString socketPath;
        qint64 milliseconds = 0;
        QString error;
    };

    /// Requests the settings. Waits for the answer in a nested event loop.
    static Answer ask(int timeoutMs);

    struct Start {
        /// Empty when it runs.
        QString failure;
        qint64 milliseconds = 0;
    };
    /// Starts it as the host does, and waits until it answers. It keeps running.
    static Start start(const QString &program, int timeoutMs);
};
