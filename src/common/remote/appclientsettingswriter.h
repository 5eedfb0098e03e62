#pragma once

#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <memory>
#include <utility>

class AppDataAccessHelper;
class AppRemoteFrontendClientModule;
class QtAppAbstractSettingsManager;

/**
 * Writes changes of the client's settings to the local store while the main application, which
 * owns the settings, is not connected; and when the link breaks, the changes that the application
 * had not confirmed.
 *
 * Changes that cannot be stored are kept and retried: with the next change, every retryAfterMs, and
 * at the end. If the application connects first, they are sent to it instead. Belongs to one
 * thread.
 */
class AppClientSettingsWriter : public QObject {
    Q_OBJECT
public:
    /// The interval of retries. Only the first attempt waits for a locked store.
    static constexpr int retryAfterMs = 2000;

    enum class Outcome {
        Stored,
        /// Another process has locked the store.
        Busy,
        Failed,
    };
    Q_ENUM(Outcome)

    AppClientSettingsWriter(
        QSharedPointer<AppRemoteFrontendClientModule> remoteFrontendClientModule,
        QSharedPointer<QtAppAbstractSettingsManager> watched,
        QSharedPointer<AppDataAccessHelper> dataAccessHelper, QObject *parent = nullptr,
        QtClock &clock = QtClock::system());
    ~AppClientSettingsWriter() override;

Q_SIGNALS:
    /// A change could not be stored; or such changes are stored now, or were sent to the
    /// application.
    void outcomeChanged(AppClientSettingsWriter::Outcome outcome);

private Q_SLOTS:
    void onSettingsValuesChanged(const QList<std::pair<QString, QString>> &changed,
                                 const QString &source);
    void onSettingsResetToDefaults();
    void onConnectedStateChanged(bool connected);

private:
    void store(const QList<std::pair<QString, QString>> &changed, const QString &source);
    void retry();
    /// Closes the store once everything is stored.
    void finish(const QSharedPointer<QtAppAbstractSettingsManager> &store);
    void setOutcome(Outcome outcome);

    const QSharedPointer<AppRemoteFrontendClientModule> m_remoteFrontendClientModule;
    const QSharedPointer<QtAppAbstractSettingsManager> m_watched;
    const QSharedPointer<AppDataAccessHelper> m_dataAccessHelper;
    const std::unique_ptr<QtSingleShotTimer> m_retryTimer;
    /// The store, kept open while it has unstored changes.
    QSharedPointer<QtAppAbstractSettingsManager> m_unstored;
    Outcome m_outcome = Outcome::Stored;
};
