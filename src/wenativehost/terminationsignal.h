#pragma once

#include <QObject>

/**
 * Turns the first SIGTERM, which is sent by browsers and at the end of a user's session, into a Qt
 * signal, so that the program can shut down cleanly. After graceSeconds, or by the next SIGTERM, it
 * is killed as without this class. One per process, on the main thread.
 */
class TerminationSignal : public QObject {
    Q_OBJECT
public:
    static constexpr unsigned graceSeconds = 2;

    explicit TerminationSignal(QObject *parent = nullptr);
    ~TerminationSignal() override;

Q_SIGNALS:
    void received();
};
