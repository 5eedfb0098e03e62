#include "kovnotifications.h"

#include "appidentity.h"
#include "appsettings.h"
#include "kovdesktop.h"
#include "kovdownloadsqueue.h"
#include "kovhttpresponse.h"
#include "qtappabstractsettingsmanager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QLocale>
#include <QVariantMap>

#include <utility>

namespace {

const QString serviceName = u"org.freedesktop.Notifications"_qs;
const QString servicePath = u"/org/freedesktop/Notifications"_qs;

const QString openAction = u"open"_qs;
const QString folderAction = u"folder"_qs;
const QString retryAction = u"retry"_qs;
/// The action of a click on the notification itself.
const QString defaultAction = u"default"_qs;

constexpr int maxNameLength = 200;
constexpr int noTimeout = -1; // the desktop's default

QDBusMessage call(const QString &method)
{
    return QDBusMessage::createMethodCall(serviceName, servicePath, serviceName, method);
}

QString shownName(const KovJob &job)
{
    const QString name =
        printable(job.path.isEmpty() ? job.url.toDisplayString(QUrl::RemoveUserInfo)
                                     : QFileInfo(job.path).fileName());
    return name.size() > maxNameLength ? name.left(maxNameLength) + u'…' : name;
}

} // namespace

KovNotifications::KovNotifications(QSharedPointer<QtAppAbstractSettingsManager> settings,
                                   QSharedPointer<KovDownloadsQueue> queue,
                                   const QString &translationsPath, QObject *parent)
    : QObject(parent), m_settings(std::move(settings)), m_queue(std::move(queue)),
      m_localization(translationsPath)
{
    // The reasons of failures, some of which are Qt's, are logged and listed in English.
    m_localization.keepQtTextsEnglish();
    connect(m_queue.data(), &KovDownloadsQueue::jobAdded, this, &KovNotifications::onAdded);
    connect(m_queue.data(), &KovDownloadsQueue::jobEnded, this, &KovNotifications::onEnded);
}

bool KovNotifications::isWanted(const QString &setting) const
{
    return m_settings->value(setting) != u"0";
}

void KovNotifications::onAdded(const KovJob &job)
{
    if (!isWanted(toString(AppSettings::NotifyOfAddedDownloads)))
        return;
    if (m_added.isEmpty())
        QMetaObject::invokeMethod(this, &KovNotifications::notifyAdded, Qt::QueuedConnection);
    m_added.append(job);
}

void KovNotifications::notifyAdded()
{
    loadLocalization();
    const QList<KovJob> added = std::exchange(m_added, {});
    if (added.size() == 1)
        //: Title of a notification; the file's name follows
        tell({tr("Download added"), shownName(added.constFirst()), {}, added.constFirst().id});
    else
        //: Title of a notification; %1 is their number
        tell({tr("Downloads added: %1").arg(QLocale().toString(added.size())), {}, {}, 0});
}

void KovNotifications::onEnded(const KovJob &job)
{
    const bool isFinished = job.state == KovJob::State::Finished;
    if (!isWanted(toString(isFinished ? AppSettings::NotifyOfFinishedDownloads
                                      : AppSettings::NotifyOfFailedDownloads)))
        return;
    loadLocalization();
    if (isFinished)
        //: Title of a notification; the file's name follows
        tell({tr("Download finished"),
              shownName(job),
              //: Button of a notification: opens the file
              {defaultAction, tr("Open"), openAction, tr("Open"),
               //: Button of a notification: opens the folder in which the file is
               folderAction, tr("Show in folder")},
              job.id});
    else
        //: Title of a notification; the file's name and the reason follow
        tell({tr("Download failed"),
              shownName(job) + u'\n' + job.error,
              //: Button of a notification: tries the download again
              {retryAction, tr("Retry")},
              job.id});
}

void KovNotifications::tell(const Message &message)
{
    if (m_capabilities) {
        send(message);
        return;
    }
    m_waiting.append(message);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_waiting.clear();
        return;
    }
    if (std::exchange(m_isAsked, true))
        return;
    // Qt wants the signatures without blanks.
    // clang-format off
    bus.connect(serviceName, servicePath, serviceName, u"ActionInvoked"_qs, this,
                SLOT(onActionInvoked(uint,QString)));
    bus.connect(serviceName, servicePath, serviceName, u"NotificationClosed"_qs, this,
                SLOT(onNotificationClosed(uint,uint)));
    // clang-format on
    auto *const watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(call(u"GetCapabilities"_qs)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QStringList> reply = *watcher;
        watcher->deleteLater();
        const QList<Message> waiting = std::exchange(m_waiting, {});
        m_isAsked = false;
        if (reply.isError())
            return; // no service now; there may be one at the next message
        m_capabilities = reply.value();
        for (const Message &each : waiting)
            send(each);
    });
}

void KovNotifications::send(const Message &message)
{
    const bool hasMarkup = m_capabilities->contains(u"body-markup");
    const bool hasActions = m_capabilities->contains(u"actions");
    QDBusMessage notify = call(u"Notify"_qs);
    notify.setArguments({appName(), 0U, u"folder-download"_qs, message.title,
                         hasMarkup ? message.body.toHtmlEscaped() : message.body,
                         hasActions ? message.actions : QStringList(),
                         QVariantMap{{u"desktop-entry"_qs, u"kovalo-downloads"_qs},
                                     {u"category"_qs, u"transfer"_qs}},
                         noTimeout});
    auto *const watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(notify), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, job = message.job] {
        const QDBusPendingReply<uint> reply = *watcher;
        watcher->deleteLater();
        if (reply.isError())
            m_capabilities.reset(); // another service may be started
        else
            m_jobs.insert(reply.value(), job);
    });
}

void KovNotifications::onActionInvoked(uint notification, const QString &action)
{
    const qint64 id = m_jobs.value(notification, -1);
    if (!m_queue->contains(id))
        return;
    if (action == retryAction) {
        m_queue->resume(id);
        return;
    }
    const QString file = m_queue->job(id).path;
    if (action == openAction || action == defaultAction)
        KovDesktop::open(file);
    else if (action == folderAction)
        KovDesktop::open(QFileInfo(file).path());
}

void KovNotifications::onNotificationClosed(uint notification, uint)
{
    m_jobs.remove(notification);
}

void KovNotifications::loadLocalization()
{
    const QString name = m_settings->value(toString(AppSettings::LocaleName));
    if (m_locale == name)
        return;
    m_locale = name;
    m_localization.load(name.isEmpty() ? QLocale::system() : QLocale(name));
}
