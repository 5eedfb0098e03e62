#include "vhipcsettings.h"

#include "vhipckeys.h"

#include <algorithm>
#include <utility>

namespace {

QString valuesKey() { return QStringLiteral("values"); }
QString defaultValuesKey() { return QStringLiteral("defaultValues"); }
QString queryAllReason() { return QStringLiteral("queryAll"); }
QString allReason() { return QStringLiteral("all"); }
QString changedReason() { return QStringLiteral("changed"); }
QString resetReason() { return QStringLiteral("resetToDefaults"); }

QHash<QString, QVariant> message(const QString &reason)
{
    return {{VhIpcKeys::name(), VhIpcSettings::partName()}, {VhIpcKeys::reason(), reason}};
}

} // namespace

VhIpcSettings::VhIpcSettings(QSharedPointer<QtAppAbstractSettingsManager> settingsManager,
                             quint32 flags, QSet<QString> localNames, QObject *parent,
                             QtClock &clock)
    : QtAbstractVhIpcPart(parent), m_settingsManager(std::move(settingsManager)), m_flags(flags),
      m_localNames(std::move(localNames)), m_clock(clock), m_confirmTimer(clock.createTimer())
{
    QtAppAbstractSettingsManager *const manager = m_settingsManager.data();
    if (hasFlag(SendAllOnAllValuesChanged))
        connect(manager, &QtAppAbstractSettingsManager::allValuesChanged, this,
                &VhIpcSettings::onSettingsAllValuesChanged);
    if (hasFlag(SendReset))
        connect(manager, &QtAppAbstractSettingsManager::settingsResetToDefaults, this,
                &VhIpcSettings::onSettingsResetToDefaults);
    if (hasFlag(SendChanged))
        connect(manager, &QtAppAbstractSettingsManager::valuesChanged, this,
                &VhIpcSettings::onSettingsValuesChanged);
    connect(m_confirmTimer.get(), &QtSingleShotTimer::timeout, this,
            &VhIpcSettings::requestAllSettings);
    if (hasFlag(RequestAll))
        setReady(false); // no slot is connected yet
}

VhIpcSettings::~VhIpcSettings() = default;

QString VhIpcSettings::partName() { return QStringLiteral("settings"); }
QString VhIpcSettings::changesSource() { return QStringLiteral("VhIpcSettings"); }

void VhIpcSettings::onConnectChanged(bool connected)
{
    QtAbstractVhIpcPart::onConnectChanged(connected);
    if (!hasFlag(RequestAll))
        return;
    m_connected = connected;
    m_questions = 0;
    m_answers = 0;
    m_confirmTimer->stop();
    for (LocalChange &change : m_localChanges)
        change.question = 0;
    if (connected) {
        resendChanges();
        requestAllSettings();
    } else {
        setReady(false);
    }
}

void VhIpcSettings::resendChanges()
{
    const qint64 oldest = m_clock.monotonicMs() - maxResendAgeMs;
    m_localChanges.removeIf([oldest](const auto &change) {
        return !change->told && !change->resend && change->madeAtMs <= oldest;
    });
    QHash<QString, QString> values;
    for (auto change = m_localChanges.begin(); change != m_localChanges.end(); ++change) {
        change->told = true;
        values.insert(change.key(), change->value);
    }
    if (!values.isEmpty())
        sendChanged(valuesToVariant(values));
}

void VhIpcSettings::requestAllSettings()
{
    m_confirmTimer->stop();
    ++m_questions;
    for (LocalChange &change : m_localChanges) {
        if (change.question == 0)
            change.question = m_questions;
    }
    Q_EMIT sendVh(message(queryAllReason()));
}

bool VhIpcSettings::hasUnaskedChanges() const
{
    return std::any_of(m_localChanges.cbegin(), m_localChanges.cend(),
                       [](const LocalChange &change) { return change.question == 0; });
}

void VhIpcSettings::onAnswered()
{
    ++m_answers;
    m_localChanges.removeIf([this](const auto &change) {
        return change->question != 0 && change->question <= m_answers;
    });
}

QHash<QString, QString> VhIpcSettings::unconfirmedChanges() const
{
    QHash<QString, QString> values;
    for (auto change = m_localChanges.cbegin(); change != m_localChanges.cend(); ++change) {
        if (change->told)
            values.insert(change.key(), change->value);
    }
    return values;
}

void VhIpcSettings::resendOnConnect(const QStringList &names)
{
    for (const QString &name : names) {
        if (const auto change = m_localChanges.find(name); change != m_localChanges.end())
            change->resend = true;
    }
}

void VhIpcSettings::sendAllSettings()
{
    QHash<QString, QVariant> all = message(allReason());
    all.insert(valuesKey(), valuesToVariant(m_settingsManager->allValues()));
    all.insert(defaultValuesKey(), valuesToVariant(m_settingsManager->allDefaultValues()));
    Q_EMIT sendVh(all);
}

void VhIpcSettings::sendChanged(const QVariant &values)
{
    QHash<QString, QVariant> changed = message(changedReason());
    changed.insert(valuesKey(), values);
    Q_EMIT sendVh(changed);
}

void VhIpcSettings::processVh(const QHash<QString, QVariant> &map)
{
    const QString reason = map.value(VhIpcKeys::reason()).toString();
    if (reason == changedReason()) {
        if (hasFlag(ApplyChanged))
            applyChanged(valuesVectorFromVariant(map.value(valuesKey())));
    } else if (reason == allReason()) {
        if (hasFlag(ApplyAll) || (hasFlag(RequestAll) && !isReady()))
            applyAll(valuesHashFromVariant(map.value(valuesKey())),
                     valuesHashFromVariant(map.value(defaultValuesKey())));
    } else if (reason == resetReason()) {
        if (hasFlag(ApplyReset))
            applyReset();
    } else if (reason == queryAllReason()) {
        sendAllSettings();
    }
}

void VhIpcSettings::applyChanged(const QList<std::pair<QString, QString>> &values)
{
    m_settingsManager->setValues(values, changesSource());
    const bool crossed =
        std::any_of(values.cbegin(), values.cend(), [this](const auto &nameAndValue) {
            const auto local = m_localChanges.constFind(nameAndValue.first);
            return local != m_localChanges.cend() && local->question == 0
                && local->value != nameAndValue.second;
        });
    if (crossed)
        requestAllSettings();
}

void VhIpcSettings::applyAll(QHash<QString, QString> values, QHash<QString, QString> defaults)
{
    for (const QString &name : m_localNames) {
        values.remove(name);
        defaults.remove(name);
    }
    const QHash<QString, QString> ownDefaults = m_settingsManager->allDefaultValues();
    for (auto own = ownDefaults.cbegin(); own != ownDefaults.cend(); ++own) {
        if (!defaults.contains(own.key()))
            defaults.insert(own.key(), own.value());
    }

    const bool isAnswer = m_answers < m_questions;
    if (isAnswer) {
        onAnswered();
        for (auto change = m_localChanges.cbegin(); change != m_localChanges.cend(); ++change)
            values.insert(change.key(), change->value);
    }

    m_settingsManager->setAll(values, defaults, changesSource());
    setReady(true);

    if (!isAnswer && hasUnaskedChanges())
        requestAllSettings();
}

void VhIpcSettings::applyReset()
{
    m_settingsManager->resetToDefaults(changesSource());
    if (hasUnaskedChanges())
        requestAllSettings();
}

void VhIpcSettings::onSettingsValuesChanged(const QList<std::pair<QString, QString>> &values,
                                            const QString &source)
{
    if (source == changesSource())
        return;
    if (hasFlag(RequestAll)) {
        const qint64 now = m_clock.monotonicMs();
        for (const auto &[name, value] : values)
            m_localChanges.insert(name, {.value = value, .madeAtMs = now, .told = m_connected});
        if (m_connected)
            m_confirmTimer->start(confirmTimeoutMs);
    }
    sendChanged(valuesToVariant(values));
}

void VhIpcSettings::onSettingsAllValuesChanged(const QString &source)
{
    if (source != changesSource())
        sendAllSettings();
}

void VhIpcSettings::onSettingsResetToDefaults(const QString &source)
{
    if (source != changesSource())
        Q_EMIT sendVh(message(resetReason()));
}

QVariant VhIpcSettings::valuesToVariant(const QHash<QString, QString> &values)
{
    QVariantHash result;
    result.reserve(values.size());
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        result.insert(value.key(), value.value());
    return result;
}

QVariant VhIpcSettings::valuesToVariant(const QList<std::pair<QString, QString>> &values)
{
    QVariantHash result;
    result.reserve(values.size());
    for (const auto &[name, value] : values)
        result.insert(name, value);
    return result;
}

QHash<QString, QString> VhIpcSettings::valuesHashFromVariant(const QVariant &variant)
{
    const QVariantHash values = variant.toHash();
    QHash<QString, QString> result;
    result.reserve(values.size());
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        result.insert(value.key(), value.value().toString());
    return result;
}

QList<std::pair<QString, QString>> VhIpcSettings::valuesVectorFromVariant(const QVariant &variant)
{
    const QVariantHash values = variant.toHash();
    QList<std::pair<QString, QString>> result;
    result.reserve(values.size());
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        result.emplace_back(value.key(), value.value().toString());
    return result;
}
