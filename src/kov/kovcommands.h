#pragma once

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

class KovDownloadsQueue;
class QtAppAbstractSettingsManager;

/// What the exit code and the standard output (or, after a failure, the standard error) of a
/// command are to be.
struct KovCommandResult {
    int exitCode = 0;
    /// Lines, each with its line feed.
    QString output;
};

/// Carries out in the running application what was asked for on a command line.
class KovCommands : public QObject {
    Q_OBJECT
public:
    /// What can be asked for.
    static QString usage();

    KovCommands(QSharedPointer<QtAppAbstractSettingsManager> settings,
                QSharedPointer<KovDownloadsQueue> queue, QObject *parent = nullptr);
    ~KovCommands() override;

    KovCommandResult run(const QStringList &arguments);

Q_SIGNALS:
    void quitRequested();

private:
    KovCommandResult set(const QString &name, const QString &value);
    KovCommandResult get(const QString &name) const;
    KovCommandResult list() const;
    KovCommandResult jobs() const;

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<KovDownloadsQueue> m_queue;
};
