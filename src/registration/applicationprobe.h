#pragma once

#include <QString>

/// The application, asked over its socket as the host asks it.
class ApplicationProbe {
public:
    struct Answer {
        enum class Outcome {
            Answered,
            /// No server listens on the socket.
            NotRunning,
            /// Somebody else's program serves there.
            OfAnotherUser,
            /// It took the connection, and that was all.
            Silent,
        };
        Outcome outcome = Outcome::NotRunning;
        /// Where the socket is.
        QString socketPath;
        qint64 milliseconds = 0;
        QString error;
    };

    /// Asks for the settings. Waits for the answer, in an event loop.
    static Answer ask(int timeoutMs);

    struct Start {
        /// Empty when it runs.
        QString failure;
        qint64 milliseconds = 0;
    };
    /// Starts it as the host does, and waits until it serves. It stays.
    static Start start(const QString &program, int timeoutMs);
};
