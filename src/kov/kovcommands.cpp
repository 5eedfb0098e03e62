#include "kovcommands.h"

#include "appsettings.h"
#include "dmcoresettings.h"
#include "kovcommandline.h"
#include "kovcommandmessages.h"
#include "kovhttpexchange.h"
#include "kovhttpresponse.h"
#include "kovsettings.h"
#include "kovunits.h"
#include "qtappabstractsettingsmanager.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using Download = KovDownloadsQueue::Download;
using State = KovJob::State;

QStringList settingNames()
{
    QStringList names = KovSettings::names();
    for (int i = 0; i < AppSettings::LastSettingValuePlus1; ++i)
        names += toString(static_cast<AppSettings::Setting>(i));
    for (int i = 0; i < DmCoreSettings::LastSettingValuePlus1; ++i)
        names += toString(static_cast<DmCoreSettings::Setting>(i));
    names.sort();
    return names;
}

KovCommandResult failure(const QString &text)
{
    return {KovCommandLine::failureExitCode, u"kov: "_qs + text + u'\n'};
}

KovCommandResult unknownSetting(const QString &name)
{
    return failure(QStringLiteral("there is no setting \"%1\"").arg(name));
}

/// The key of a setting; for two settings it differs from the name in the catalogue.
QString settingKey(const QString &name)
{
    bool isName = false;
    const int value = QMetaEnum::fromType<DmCoreSettings::Setting>().keyToValue(
        name.toLatin1().constData(), &isName);
    return isName ? toString(static_cast<DmCoreSettings::Setting>(value)) : name;
}

KovCommandResult unknownJob(const QString &id)
{
    return failure(QStringLiteral("there is no download %1").arg(id));
}

QJsonObject toJson(const Download &download)
{
    namespace JobKeys = KovCommandMessages::JobKeys;
    const KovJob &job = download.job;
    const bool isEndKnown =
        job.state == State::Running && download.doneShare > 0 && download.bytesPerSecond > 0;
    const double missing =
        static_cast<double>(download.receivedBytes) * (1 / download.doneShare - 1);
    return {
        {JobKeys::id(), job.id},
        {JobKeys::state(), stateName(job.state)},
        {JobKeys::url(), job.url.toString(QUrl::FullyEncoded)},
        {JobKeys::path(), job.path},
        {JobKeys::partialPath(), job.partialPath},
        {JobKeys::receivedBytes(), download.receivedBytes},
        {JobKeys::totalBytes(), job.totalBytes},
        {JobKeys::speed(), download.bytesPerSecond},
        {JobKeys::percent(), download.doneShare < 0 ? -1 : std::floor(download.doneShare * 100)},
        {JobKeys::secondsLeft(),
         isEndKnown ? std::floor(missing / static_cast<double>(download.bytesPerSecond)) : -1},
        {JobKeys::connections(), download.connections},
        {JobKeys::attempts(), job.attempts},
        {JobKeys::retryInSeconds(),
         download.retryInMs < 0 ? -1 : download.retryInMs / millisecondsPerSecond},
        {JobKeys::error(), job.error},
        {JobKeys::added(), job.added.toString(Qt::ISODate)},
        {JobKeys::finished(), job.finished.toString(Qt::ISODate)}};
}

} // namespace

KovCommands::KovCommands(QSharedPointer<QtAppAbstractSettingsManager> settings,
                         QSharedPointer<KovDownloadsQueue> queue, QObject *parent)
    : QObject(parent), m_settings(std::move(settings)), m_queue(std::move(queue))
{
}

KovCommandResult KovCommands::run(const QStringList &words)
{
    const QString command = words.value(0);
    const QStringList arguments = words.mid(1);
    const qsizetype count = arguments.size();
    if ((command == u"add" || command == u"addStream") && count > 0)
        return add(arguments, command == u"addStream");
    if (command == u"jobs" && count == 0)
        return jobs();
    if (command == u"pause" && count > 0)
        return changeJobs(arguments, State::Running, [this](qint64 id) { m_queue->pause(id); });
    if (command == u"resume" && count > 0)
        return changeJobs(arguments, State::Paused, [this](qint64 id) { m_queue->resume(id); });
    if (command == u"retry" && count > 0)
        return changeJobs(arguments, State::Failed, [this](qint64 id) { m_queue->resume(id); });
    if ((command == u"remove" || command == u"removeWithFile") && count > 0)
        return changeJobs(arguments, State::Finished, [this, &command](qint64 id) {
            m_queue->remove(id, command == u"removeWithFile");
        });
    if ((command == u"open" || command == u"folder") && count <= 1)
        return path(arguments, command == u"open");
    if (command == u"set" && count == 2)
        return set(settingKey(arguments.at(0)), arguments.at(1));
    if (command == u"get" && count == 1)
        return get(settingKey(arguments.at(0)));
    if (command == u"list" && count == 0)
        return list();
    if (command == u"quit" && count == 0) {
        Q_EMIT quitRequested();
        return {};
    }
    return {KovCommandLine::usageErrorExitCode,
            QStringLiteral("kov: the service does not know this command\n")};
}

KovCommandResult KovCommands::add(const QStringList &urls, bool areStreams)
{
    QList<KovDownloadRequest> requests;
    for (const QString &text : urls) {
        const QUrl url(text, QUrl::TolerantMode);
        if (!KovHttpExchange::isSupported(url))
            return failure(QStringLiteral("this cannot be downloaded: %1").arg(printable(text)));
        requests.append({.url = url, .isStream = areStreams});
    }
    const qint64 before = m_queue->lastId();
    if (const QString error = m_queue->add(requests); !error.isEmpty())
        return failure(error);
    QString output;
    for (qsizetype i = 0; i < requests.size(); ++i)
        output += QStringLiteral("%1\t%2\n")
                      .arg(QString::number(before + 1 + i),
                           requests.at(i).url.toString(QUrl::FullyEncoded));
    return {0, output};
}

KovCommandResult KovCommands::jobs() const
{
    QJsonArray jobs;
    const QList<Download> downloads = m_queue->downloads();
    for (const Download &download : downloads)
        jobs.append(toJson(download));
    return {0, QString::fromUtf8(QJsonDocument(jobs).toJson(QJsonDocument::Compact))};
}

template <typename Change>
KovCommandResult KovCommands::changeJobs(const QStringList &ids, State all, Change change)
{
    QList<qint64> wanted;
    if (ids == QStringList(u"all"_qs)) {
        const QList<Download> downloads = m_queue->downloads();
        for (const Download &download : downloads) {
            const bool isMeant =
                all == State::Running ? download.job.isUnderWay() : download.job.state == all;
            if (isMeant)
                wanted.append(download.job.id);
        }
    } else {
        for (const QString &id : ids) {
            wanted.append(id.toLongLong());
            if (!m_queue->contains(wanted.constLast()))
                return unknownJob(id);
        }
    }
    std::for_each(wanted.cbegin(), wanted.cend(), change);
    return {};
}

KovCommandResult KovCommands::path(const QStringList &ids, bool ofFile) const
{
    if (ids.isEmpty() && !ofFile) {
        // Before the first download it may not be there.
        QDir().mkpath(m_queue->folderPath());
        return {0, m_queue->folderPath() + u'\n'};
    }
    const QList<Download> downloads = m_queue->downloads();
    const auto download =
        std::find_if(downloads.cbegin(), downloads.cend(), [&ids](const Download &each) {
            return QString::number(each.job.id) == ids.value(0);
        });
    if (download == downloads.cend())
        return unknownJob(ids.value(0));
    const QString file = download->job.path;
    if (ofFile && download->job.state != State::Finished)
        return failure(QStringLiteral("download %1 is %2")
                           .arg(QString::number(download->job.id), stateName(download->job.state)));
    if (ofFile && !QFileInfo::exists(file))
        return failure(QStringLiteral("the file is gone: %1").arg(printable(file)));
    return {0, (file.isEmpty() ? m_queue->folderPath() : file) + u'\n'};
}

KovCommandResult KovCommands::set(const QString &name, const QString &value)
{
    if (!settingNames().contains(name))
        return unknownSetting(name);
    m_settings->setValues({{name, value}}, QStringLiteral("KovCommands"));
    return {};
}

KovCommandResult KovCommands::get(const QString &name) const
{
    if (!settingNames().contains(name))
        return unknownSetting(name);
    return {0, m_settings->value(name) + u'\n'};
}

KovCommandResult KovCommands::list() const
{
    QString output;
    const QStringList names = settingNames();
    for (const QString &name : names)
        output += name + u'=' + m_settings->value(name) + u'\n';
    return {0, output};
}
