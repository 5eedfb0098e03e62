#pragma once

#include "qtabstractvhipcpart.h"
#include "qtappabstractsettingsmanager.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <utility>

/**
 * The part "settings" of the link: keeps a settings manager and that of the peer equal. The flags
 * say what this end takes from the peer and what it tells it.
 *
 * What the peer wrote is not written back: this part makes its changes under the source
 * "VhIpcSettings" and does not tell of changes from that source.
 *
 * With RequestAll this end follows the peer, whose settings count. Changes made at both ends at the
 * same moment cross on the link, and each end would keep the other's. So this end remembers what
 * was changed here until the peer has confirmed it, by its answer to a question for everything that
 * was asked after the change was told, and
 *  - lays over an answer what was changed after its question: it was written before the peer knew;
 *  - asks again when a change of the peer crosses one of those: the answer is what the peer settled
 *    on;
 *  - asks when a change has stood for confirmWithinMs;
 *  - tells a change again after a reconnect when it was told before and not confirmed, when it
 * could not be stored (resendOnConnect()), or when it was made less than resendWithinMs before: the
 *    peer may have read its stored settings before that change.
 */
class VhIpcSettings : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    enum Flag : quint32 {
        ApplyChanged = 1,
        /// Take "all" at any time.
        ApplyAll = 2,
        ApplyReset = 4,
        SendChanged = 8,
        SendAllOnAllValuesChanged = 16,
        SendReset = 32,
        /// Ask for everything when the link comes up; not ready before it was applied.
        RequestAll = 64,
    };

    /// What is older was in the stored settings before the peer that is connected to now started.
    /// Starting takes it a few seconds, and the pauses between attempts to connect are 3 s at most.
    static constexpr int resendWithinMs = 10'000;
    /// Changes that follow each other closely are asked about once.
    static constexpr int confirmWithinMs = 1000;

    /// "flags" is a combination of Flag. "localNames" are the settings that an "all" of the peer
    /// does not bring.
    VhIpcSettings(QSharedPointer<QtAppAbstractSettingsManager> settingsManager, quint32 flags,
                  QSet<QString> localNames, QObject *parent = nullptr,
                  QtClock &clock = QtClock::system());
    ~VhIpcSettings() override;

    /// The name that routes messages to this part.
    static QString partName();
    /// The source of all changes that this part makes.
    static QString changesSource();

    void requestAllSettings();
    void sendAllSettings();

    /// What was changed here and told to the peer, without a confirmation so far.
    QHash<QString, QString> unconfirmedChanges() const;
    /// These changes are told at the next connect, however old they are then.
    void resendOnConnect(const QStringList &names);

    void processVh(const QHash<QString, QVariant> &map) override;
    void onConnectChanged(bool connected) override;

    /// A hash of texts; of pairs with the same name the last one counts.
    static QVariant valuesToVariant(const QHash<QString, QString> &values);
    static QVariant valuesToVariant(const QList<std::pair<QString, QString>> &values);
    static QHash<QString, QString> valuesHashFromVariant(const QVariant &variant);
    static QList<std::pair<QString, QString>> valuesVectorFromVariant(const QVariant &variant);

private Q_SLOTS:
    void onSettingsValuesChanged(const QList<std::pair<QString, QString>> &values,
                                 const QString &source);
    void onSettingsAllValuesChanged(const QString &source);
    void onSettingsResetToDefaults(const QString &source);

private:
    struct LocalChange {
        QString value;
        qint64 madeAtMs = 0;
        /// Told to the peer, at the latest when it was last connected.
        bool told = false;
        bool resend = false;
        /// The first question that was asked after it, of those of this connection; 0: none yet.
        int question = 0;
    };

    bool hasFlag(Flag flag) const { return (m_flags & flag) != 0; }
    void applyChanged(const QList<std::pair<QString, QString>> &values);
    void applyAll(QHash<QString, QString> values, QHash<QString, QString> defaults);
    void applyReset();
    void sendChanged(const QVariant &values);
    void resendChanges();
    /// Whether something was changed here after the last question.
    bool hasUnaskedChanges() const;
    void onAnswered();

    const QSharedPointer<QtAppAbstractSettingsManager> m_settingsManager;
    const quint32 m_flags;
    const QSet<QString> m_localNames;
    QtClock &m_clock;
    const std::unique_ptr<QtSingleShotTimer> m_confirmTimer;
    bool m_connected = false;
    /// Questions for everything on this connection, and how many of them are answered.
    int m_questions = 0;
    int m_answers = 0;
    /// By name, what was changed here and is not confirmed; with RequestAll only.
    QHash<QString, LocalChange> m_localChanges;
};
