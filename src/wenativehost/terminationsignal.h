#pragma once

#include <QObject>

/**
 * Makes the first SIGTERM, which browsers and the end of a user's session send, a signal of Qt's,
 * so that the program can end in order. It has to: after graceSeconds, or with the next SIGTERM, it
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
