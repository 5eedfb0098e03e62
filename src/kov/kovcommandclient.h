#pragma once

#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

#include <memory>

class KovCommandClientPart;
class QtAbstractSocketVhIpc;
class QtLocalSocket;

/// Sends command lines to the running application, one after another.
class KovCommandClient : public QObject {
    Q_OBJECT
public:
    /// The timeout for an application that does not answer.
    static constexpr int answerTimeoutMs = 30'000;

    explicit KovCommandClient(QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~KovCommandClient() override;

    /// Not before the previous one has finished.
    void run(const QString &serverName, const QStringList &words);

Q_SIGNALS:
    /// Once after each run(), see KovCommandResult; also when the application cannot be reached.
    void finished(int exitCode, const QString &output);
    /// Instead, when the application does not run.
    void notRunning();
    /// Instead, when it ended before it answered: it may or may not have carried out the command.
    void ended();

private:
    void finish(int exitCode, const QString &output);

    const QSharedPointer<QtLocalSocket> m_socket;
    const QSharedPointer<KovCommandClientPart> m_part;
    const QSharedPointer<QtAbstractSocketVhIpc> m_vhIpc;
    const std::unique_ptr<QtSingleShotTimer> m_timer;
    QStringList m_words;
    bool m_running = false;
};
