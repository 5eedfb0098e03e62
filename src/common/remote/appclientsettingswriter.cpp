#include "appclientsettingswriter.h"

#include "appdataaccesshelper.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "qtappsettingsinsqlmanager.h"
#include "sqlbusywait.h"
#include "vhipcsettings.h"

#include <utility>

namespace {

AppClientSettingsWriter::Outcome outcomeOf(const QtAppSettingsInSqlManager &store)
{
    using State = QtAppSettingsInSqlManager::StoreState;
    using Outcome = AppClientSettingsWriter::Outcome;
    const State state = store.storeState();
    if (state == State::InStep)
        return Outcome::Stored;
    return state == State::Busy ? Outcome::Busy : Outcome::Failed;
}

} // namespace

AppClientSettingsWriter::AppClientSettingsWriter(
    QSharedPointer<AppRemoteFrontendClientModule> remoteFrontendClientModule,
    QSharedPointer<QtAppAbstractSettingsManager> watched,
    QSharedPointer<AppDataAccessHelper> dataAccessHelper, QObject *parent, QtClock &clock)
    : QObject(parent), m_remoteFrontendClientModule(std::move(remoteFrontendClientModule)),
      m_watched(std::move(watched)), m_dataAccessHelper(std::move(dataAccessHelper)),
      m_retryTimer(clock.createTimer())
{
    connect(m_watched.data(), &QtAppAbstractSettingsManager::valuesChanged, this,
            &AppClientSettingsWriter::onSettingsValuesChanged);
    connect(m_watched.data(), &QtAppAbstractSettingsManager::settingsResetToDefaults, this,
            &AppClientSettingsWriter::onSettingsResetToDefaults);
    connect(m_remoteFrontendClientModule.data(),
            &AppRemoteFrontendClientModule::connectedStateChanged, this,
            &AppClientSettingsWriter::onConnectedStateChanged);
    connect(m_retryTimer.get(), &QtSingleShotTimer::timeout, this, &AppClientSettingsWriter::retry);
}

AppClientSettingsWriter::~AppClientSettingsWriter()
{
    blockSignals(true);
    retry();
}

void AppClientSettingsWriter::onSettingsValuesChanged(
    const QList<std::pair<QString, QString>> &changed, const QString &source)
{
    if (!m_remoteFrontendClientModule->isConnected())
        store(changed, source);
}

void AppClientSettingsWriter::onSettingsResetToDefaults()
{
    if (m_remoteFrontendClientModule->isConnected())
        return;
    const SqlBusyWait wait(m_dataAccessHelper->databaseFilePath());
    const auto store = m_dataAccessHelper->settings();
    store->resetToDefaults(QString());
    finish(store);
}

void AppClientSettingsWriter::onConnectedStateChanged(bool connected)
{
    const auto processor = m_remoteFrontendClientModule->vhIpcProcessor();
    if (connected) {
        m_unstored.reset();
        m_retryTimer->stop();
        setOutcome(Outcome::Stored);
        return;
    }
    if (!processor)
        return;
    const QHash<QString, QString> unconfirmed = processor->settingsPart()->unconfirmedChanges();
    QList<std::pair<QString, QString>> changes;
    for (auto change = unconfirmed.cbegin(); change != unconfirmed.cend(); ++change)
        changes.emplace_back(change.key(), change.value());
    if (!changes.isEmpty())
        store(changes, VhIpcSettings::changesSource());
}

void AppClientSettingsWriter::store(const QList<std::pair<QString, QString>> &changed,
                                    const QString &source)
{
    // One time limit for opening, reading and writing.
    const SqlBusyWait wait(m_dataAccessHelper->databaseFilePath());
    const auto store = m_dataAccessHelper->settings();
    store->setValues(changed, source);
    finish(store);
    if (!m_unstored)
        return;
    QStringList names;
    for (const auto &nameAndValue : changed)
        names += nameAndValue.first;
    if (const auto processor = m_remoteFrontendClientModule->vhIpcProcessor())
        processor->settingsPart()->resendOnConnect(names);
}

void AppClientSettingsWriter::retry()
{
    const auto store = m_unstored.objectCast<QtAppSettingsInSqlManager>();
    if (!store)
        return;
    store->storeUnstored();
    finish(store);
}

void AppClientSettingsWriter::finish(const QSharedPointer<QtAppAbstractSettingsManager> &store)
{
    const auto inSql = store.objectCast<QtAppSettingsInSqlManager>();
    const Outcome outcome = inSql ? outcomeOf(*inSql) : Outcome::Stored;
    if (outcome == Outcome::Stored) {
        m_unstored.reset();
        m_retryTimer->stop();
    } else {
        m_unstored = store;
        m_retryTimer->start(retryAfterMs);
    }
    setOutcome(outcome);
}

void AppClientSettingsWriter::setOutcome(Outcome outcome)
{
    if (std::exchange(m_outcome, outcome) != outcome)
        Q_EMIT outcomeChanged(outcome);
}
