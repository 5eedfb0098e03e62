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
 * Tells the user of downloads in the desktop's own way (Desktop Notifications Specification,
 * https://specifications.freedesktop.org/notification-spec), as the settings "NotifyOf…Downloads"
 * say, and does what the user chooses there. Says nothing where there is no such service.
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
        /// Names and captions in turn.
        QStringList actions;
        /// Which the actions are about.
        qint64 job = 0;
    };

    bool isWanted(const QString &setting) const;
    void onAdded(const KovJob &job);
    void tellOfAdded();
    void onEnded(const KovJob &job);
    void tell(const Message &message);
    void send(const Message &message);
    void loadLocalization();

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<KovDownloadsQueue> m_queue;
    AppLocalizationManager m_localization;
    std::optional<QString> m_locale;
    /// Of this turn of the event loop.
    QList<KovJob> m_added;
    /// Waiting for the service's answer on what it can.
    QList<Message> m_waiting;
    /// Unknown before the first message.
    std::optional<QStringList> m_capabilities;
    bool m_isAsked = false;
    QHash<uint, qint64> m_jobs;
};
