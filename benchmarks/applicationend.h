#pragma once

#include <QSharedPointer>
#include <QString>
#include <QThread>

/// The sizes of one exchange on the socket, in bytes including the length prefixes.
struct ExchangeSizes {
    qsizetype message = 0;
    qsizetype answer = 0;
    /// The size of the message about a changed setting.
    qsizetype change = 0;
};

/**
 * The application's end of a local socket, in a thread of its own, for one client after the other.
 * There are two: one that sends settings like the application and answers downloads, without
 * decoding them, as added; and a bare one, which answers so many bytes with so many others.
 */
class ApplicationEnd {
public:
    /// The part that lives in the thread.
    class Worker;

    /// The one for hosts.
    explicit ApplicationEnd(const QString &name);
    /// The bare one.
    ApplicationEnd(const QString &name, ExchangeSizes sizes);
    ~ApplicationEnd();
    Q_DISABLE_COPY_MOVE(ApplicationEnd)

    /// Sends the client a changed setting, from the thread, starting now.
    void changeSetting();
    /// The exchange of the first download.
    ExchangeSizes sizes() const;

private:
    void start(const QString &name);

    QThread m_thread;
    Worker *m_worker = nullptr;
};
