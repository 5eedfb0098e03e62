#pragma once

#include "kovdownloadsqueue.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

class QtAppAbstractSettingsManager;

/// What the exit code and the standard output (or, after a failure, the standard error) of a
/// command are to be.
struct KovCommandResult {
    int exitCode = 0;
    /// Lines, each with its line feed; for "jobs" a JSON array, see KovCommandMessages::JobKeys.
    QString output;
};

/// Carries out in the running application what was asked for on a command line.
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
    /// Does the same with each of the jobs, or with all in that state for "all".
    template <typename Change>
    KovCommandResult changeJobs(const QStringList &ids, KovJob::State all, Change change);
    KovCommandResult path(const QStringList &ids, bool ofFile) const;
    KovCommandResult set(const QString &name, const QString &value);
    KovCommandResult get(const QString &name) const;
    KovCommandResult list() const;

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<KovDownloadsQueue> m_queue;
};
