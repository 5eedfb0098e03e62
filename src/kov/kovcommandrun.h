#pragma once

#include "kovcommandclient.h"
#include "kovcommandline.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>
#include <QString>

#include <memory>

/// Carries out one command line at the terminal: asks the service, which it starts when need be,
/// and shows what that answers.
class KovCommandRun : public QObject {
    Q_OBJECT
public:
    /// For a service that was just started.
    static constexpr int serviceStartsWithinMs = 10'000;

    KovCommandRun(KovCommandLine line, QString serverName, QObject *parent = nullptr,
                  QtClock &clock = QtClock::system());
    ~KovCommandRun() override;

    void start();

    /// Lines for the standard output, or after a failure for the standard error. Returns the code.
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
    bool m_serviceStarted = false;
    qint64 m_startedAtMs = 0;
    /// What stands on the terminal and is to be replaced.
    QString m_shown;
};
