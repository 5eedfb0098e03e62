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
 * The part "settings" of the link: keeps a settings manager in sync with the peer's. The flags say
 * what this end accepts from the peer, and what it sends.
 *
 * Changes by the peer are not echoed: this part applies them with the source "VhIpcSettings", and
 * does not send changes from that source.
 *
 * With RequestAll the peer's settings take precedence. If both ends change a setting at the same
 * time, the changes cross on the link, and each end would keep the other's value. So this end keeps
 * each local change as unconfirmed until the peer has answered a request for all settings that was
 * sent after the change; and it
 *  - applies the changes made after the request on top of the answer, which the peer wrote before
 * it knew them;
 *  - requests again when a change by the peer crosses one of them: the answer has the value on
 * which the peer settled;
 *  - requests when a change has been unconfirmed for confirmTimeoutMs;
 *  - after a reconnect, sends a change again if it was sent before but not confirmed, if it could
 *    not be stored (resendOnConnect()), or if it was made less than maxResendAgeMs before: the peer
 *    may have read its stored settings before that change.
 */
class VhIpcSettings : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    enum Flag : quint32 {
        ApplyChanged = 1,
        /// Accept "all" at any time.
        ApplyAll = 2,
        ApplyReset = 4,
        SendChanged = 8,
        SendAllOnAllValuesChanged = 16,
        SendReset = 32,
        /// Request all settings when the link comes up; not ready until they were applied.
        RequestAll = 64,
    };

    /// Older changes were in the stored settings before the peer started: its start takes a few
    /// seconds, and the delay between attempts to connect is 3 s at most.
    static constexpr int maxResendAgeMs = 10'000;
    /// Changes in quick succession share one request.
    static constexpr int confirmTimeoutMs = 1000;

    /// "flags" is a combination of Flag. "localNames" are settings that the peer's "all" does not
    /// contain.
    VhIpcSettings(QSharedPointer<QtAppAbstractSettingsManager> settingsManager, quint32 flags,
                  QSet<QString> localNames, QObject *parent = nullptr,
                  QtClock &clock = QtClock::system());
    ~VhIpcSettings() override;

    /// The name under which messages are dispatched to this part.
    static QString partName();
    /// The source of all changes that this part makes.
    static QString changesSource();

    void requestAllSettings();
    void sendAllSettings();

    /// The local changes that were sent to the peer and are still unconfirmed.
    QHash<QString, QString> unconfirmedChanges() const;
    /// These changes are sent at the next connect, however old they are then.
    void resendOnConnect(const QStringList &names);

    void processVh(const QHash<QString, QVariant> &map) override;
    void onConnectChanged(bool connected) override;

    /// A hash of texts; for a repeated name the last value counts.
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
        /// Sent to the peer, at the latest during the last connection.
        bool told = false;
        bool resend = false;
        /// The number of the first request on this connection after the change; 0: none yet.
        int question = 0;
    };

    bool hasFlag(Flag flag) const { return (m_flags & flag) != 0; }
    void applyChanged(const QList<std::pair<QString, QString>> &values);
    void applyAll(QHash<QString, QString> values, QHash<QString, QString> defaults);
    void applyReset();
    void sendChanged(const QVariant &values);
    void resendChanges();
    /// Whether there was a local change after the last request.
    bool hasUnaskedChanges() const;
    void onAnswered();

    const QSharedPointer<QtAppAbstractSettingsManager> m_settingsManager;
    const quint32 m_flags;
    const QSet<QString> m_localNames;
    QtClock &m_clock;
    const std::unique_ptr<QtSingleShotTimer> m_confirmTimer;
    bool m_connected = false;
    /// The number of requests for all settings on this connection, and of answers to them.
    int m_questions = 0;
    int m_answers = 0;
    /// The unconfirmed local changes by name; with RequestAll only.
    QHash<QString, LocalChange> m_localChanges;
};
