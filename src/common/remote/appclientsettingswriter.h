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
 * owns the settings, is not connected, and when the link breaks those that it had not confirmed.
 *
 * What cannot be stored is kept and tried again: with the next change, every retryAfterMs, and at
 * the end. When the application connects first, it is told of those changes instead. Belongs to one
 * thread.
 */
class AppClientSettingsWriter : public QObject {
    Q_OBJECT
public:
    /// A store that could not be used is waited for once; later attempts take no time.
    static constexpr int retryAfterMs = 2000;

    enum class Outcome {
        Stored,
        /// Another process has the store.
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
    /// A change could not be stored, or what could not be is stored now or the application's
    /// matter.
    void outcomeChanged(AppClientSettingsWriter::Outcome outcome);

private Q_SLOTS:
    void onSettingsValuesChanged(const QList<std::pair<QString, QString>> &changed,
                                 const QString &source);
    void onSettingsResetToDefaults();
    void onConnectedStateChanged(bool connected);

private:
    void store(const QList<std::pair<QString, QString>> &changed, const QString &source);
    void retry();
    /// Lets the store go when it has everything.
    void finish(const QSharedPointer<QtAppAbstractSettingsManager> &store);
    void setOutcome(Outcome outcome);

    const QSharedPointer<AppRemoteFrontendClientModule> m_remoteFrontendClientModule;
    const QSharedPointer<QtAppAbstractSettingsManager> m_watched;
    const QSharedPointer<AppDataAccessHelper> m_dataAccessHelper;
    const std::unique_ptr<QtSingleShotTimer> m_retryTimer;
    /// The store with what it could not store yet.
    QSharedPointer<QtAppAbstractSettingsManager> m_unstored;
    Outcome m_outcome = Outcome::Stored;
};
