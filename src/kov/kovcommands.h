#pragma once

#include "kovdownloadsqueue.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

class QtAppAbstractSettingsManager;

/// The exit code of a command, and its output to stdout or, after a failure, stderr.
struct KovCommandResult {
    int exitCode = 0;
    /// Lines, each with its line feed; for "jobs" a JSON array, see KovCommandMessages::JobKeys.
    QString output;
};

/// Runs command lines in the running application.
class KovCommands : public QObject {
    Q_OBJECT
public:
    KovCommands(QSharedPointer<QtAppAbstractSettingsManager> settings,
                QSharedPointer<KovDownloadsQueue> queue, QObject *parent = nullptr);

    /// The words are those of KovCommandLine::words.
    KovCommandResult run(const QStringList &words);

Q_SIGNALS:
    void quitRequested();

private:
    KovCommandResult add(const QStringList &urls, bool areStreams);
    KovCommandResult jobs() const;
    /// Applies an action to each of the jobs, or for "all" to all jobs in that state.
    template <typename Change>
    KovCommandResult changeJobs(const QStringList &ids, KovJob::State all, Change change);
    KovCommandResult path(const QStringList &ids, bool ofFile) const;
    KovCommandResult set(const QString &name, const QString &value);
    KovCommandResult get(const QString &name) const;
    KovCommandResult list() const;

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<KovDownloadsQueue> m_queue;
};
