#pragma once

#include "applocalizationmanager.h"
#include "kovjob.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

#include <optional>

class KovDownloadsQueue;
class QtAppAbstractSettingsManager;

/**
 * Shows desktop notifications about downloads (the D-Bus interface org.freedesktop.Notifications),
 * depending on the settings "NotifyOf…Downloads", and runs the actions that the user chooses there.
 * Does nothing where no such service exists.
 */
class KovNotifications : public QObject {
    Q_OBJECT
public:
    KovNotifications(
        QSharedPointer<QtAppAbstractSettingsManager> settings,
        QSharedPointer<KovDownloadsQueue> queue,
        const QString &translationsPath = AppLocalizationManager::appTranslationsPath(),
        QObject *parent = nullptr);

private Q_SLOTS:
    void onActionInvoked(uint notification, const QString &action);
    void onNotificationClosed(uint notification, uint reason);

private:
    struct Message {
        QString title;
        QString body;
        /// Alternating names and captions.
        QStringList actions;
        /// The jobs that the actions apply to.
        qint64 job = 0;
    };

    bool isWanted(const QString &setting) const;
    void onAdded(const KovJob &job);
    void notifyAdded();
    void onEnded(const KovJob &job);
    void tell(const Message &message);
    void send(const Message &message);
    void loadLocalization();

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<KovDownloadsQueue> m_queue;
    AppLocalizationManager m_localization;
    std::optional<QString> m_locale;
    /// Collected in this turn of the event loop.
    QList<KovJob> m_added;
    /// Waiting for the service's capabilities.
    QList<Message> m_waiting;
    /// Unknown before the first message.
    std::optional<QStringList> m_capabilities;
    bool m_isAsked = false;
    QHash<uint, qint64> m_jobs;
};
