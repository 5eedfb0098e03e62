#pragma once

#include <QSharedPointer>
#include <QString>
#include <QThread>

/// What goes over the socket for one exchange, in bytes with the lengths before them.
struct ExchangeSizes {
    qsizetype message = 0;
    qsizetype answer = 0;
    /// Of the message that tells of a changed setting.
    qsizetype change = 0;
};

/**
 * The application's end of a local socket, in a thread of its own, for one client after the other.
 * There are two: one that tells of settings as the application does and says of downloads, which it
 * does not decode, that it has added them, and a bare one, that sends so many bytes for so many.
 */
class ApplicationEnd {
public:
    /// The part of it that lives in the thread.
    class Worker;

    /// The one that hosts can speak to.
    explicit ApplicationEnd(const QString &name);
    /// The bare one.
    ApplicationEnd(const QString &name, ExchangeSizes sizes);
    ~ApplicationEnd();
    Q_DISABLE_COPY_MOVE(ApplicationEnd)

    /// Tells the client that a setting has changed; begins in the thread, now.
    void changeSetting();
    /// Of the first download and what came after it.
    ExchangeSizes sizes() const;

private:
    void start(const QString &name);

    QThread m_thread;
    Worker *m_worker = nullptr;
};
