#pragma once

#include "kovcommandclient.h"
#include "kovcommandline.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"
#include "serverprocess.h"

#include <QObject>
#include <QString>

#include <memory>

/// Runs one command line at the terminal: sends it to the service, which is started if necessary,
/// and prints the answer.
class KovCommandRun : public QObject {
    Q_OBJECT
public:
    /// The timeout for a service that was just started.
    static constexpr int serviceStartTimeoutMs = 10'000;

    KovCommandRun(KovCommandLine line, QString serverName, QObject *parent = nullptr,
                  QtClock &clock = QtClock::system());
    ~KovCommandRun() override;

    void start();

    /// Prints lines to stdout, or after a failure to stderr. Returns the exit code.
    static int print(int exitCode, const QString &output);

Q_SIGNALS:
    void finished(int exitCode);

private:
    void ask();
    void onNotRunning();
    void onServiceEnded();
    void fail(const QString &text);
    void onAnswer(int exitCode, const QString &output);
    void showJobs(const QString &json);
    void show(const QString &path);

    const KovCommandLine m_line;
    const QString m_serverName;
    QtClock &m_clock;
    KovCommandClient m_client;
    const std::unique_ptr<QtSingleShotTimer> m_timer;
    ServerProcess m_service;
    bool m_serviceStarted = false;
    qint64 m_startedAtMs = 0;
    /// The lines on the terminal that the next ones replace.
    QString m_shown;
};
