#include "kovjobsview.h"

#include "kovcommandmessages.h"
#include "kovhttpresponse.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QUrl>

#include <algorithm>

namespace {

namespace JobKeys = KovCommandMessages::JobKeys;

constexpr int barWidth = 20;
constexpr int secondsPerMinute = 60;
constexpr int minutesPerHour = 60;
constexpr int hoursPerDay = 24;

qint64 number(const QJsonObject &job, const QString &key) { return job.value(key).toInteger(-1); }
QString text(const QJsonObject &job, const QString &key)
{
    return printable(job.value(key).toString());
}

QString jobName(const QJsonObject &job)
{
    const QString path = text(job, JobKeys::path());
    return path.isEmpty() ? text(job, JobKeys::url()) : QFileInfo(path).fileName();
}

QString bar(qint64 percent)
{
    const auto full = static_cast<int>(percent * barWidth / 100);
    return u'[' + QString(full, u'#') + QString(barWidth - full, u'-') + u']';
}

QString progress(const QJsonObject &job)
{
    const qint64 received = number(job, JobKeys::receivedBytes());
    const qint64 total = number(job, JobKeys::totalBytes());
    const QString state = text(job, JobKeys::state());
    if (state == u"finished")
        return QStringLiteral("%1  %2").arg(state.leftJustified(barWidth + 2),
                                            KovJobsView::sizeText(received));
    if (state == u"failed")
        return state.leftJustified(barWidth + 2);
    const qint64 percent = number(job, JobKeys::percent());
    QString line = percent >= 0 ? bar(percent) : state.leftJustified(barWidth + 2);
    if (percent >= 0)
        line += QStringLiteral(" %1 %").arg(percent, 3);
    line += QStringLiteral("  %1").arg(KovJobsView::sizeText(total > 0 ? total : received));
    if (state != u"running")
        return percent >= 0 ? line + u"  "_qs + state : line;
    line += QStringLiteral("  %1/s").arg(KovJobsView::sizeText(number(job, JobKeys::speed())));
    if (const qint64 left = number(job, JobKeys::secondsLeft()); left >= 0)
        line += QStringLiteral("  ") + KovJobsView::durationText(left);
    return line;
}

QString reason(const QJsonObject &job)
{
    QString error = text(job, JobKeys::error());
    const qint64 wait = number(job, JobKeys::retryInSeconds());
    if (wait < 0)
        return error;
    return QStringLiteral("again in %1: %2").arg(KovJobsView::durationText(wait), error);
}

} // namespace

QString KovJobsView::sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(std::max<qint64>(0, bytes), 1);
}

QString KovJobsView::durationText(qint64 seconds)
{
    const qint64 minutes = seconds / secondsPerMinute;
    const qint64 hours = minutes / minutesPerHour;
    if (hours >= hoursPerDay)
        return QStringLiteral("%1 d %2 h").arg(hours / hoursPerDay).arg(hours % hoursPerDay);
    if (hours > 0)
        return QStringLiteral("%1 h %2 min").arg(hours).arg(minutes % minutesPerHour);
    if (minutes > 0)
        return QStringLiteral("%1 min %2 s").arg(minutes).arg(seconds % secondsPerMinute);
    return QStringLiteral("%1 s").arg(seconds);
}

QString KovJobsView::forTerminal(const QJsonArray &jobs, int columns)
{
    QString lines;
    for (const auto &value : jobs) {
        const QJsonObject job = value.toObject();
        QString line = QStringLiteral("%1  %2  %3")
                           .arg(number(job, JobKeys::id()), 4)
                           .arg(progress(job), jobName(job));
        if (const QString why = reason(job); !why.isEmpty())
            line += QStringLiteral(" (%1)").arg(why);
        if (line.size() > columns)
            line = line.left(columns - 1) + u'…';
        lines += line + u'\n';
    }
    return lines.isEmpty() ? QStringLiteral("There are no downloads.\n") : lines;
}

QString KovJobsView::forScripts(const QJsonArray &jobs)
{
    QString lines;
    for (const auto &value : jobs) {
        const QJsonObject job = value.toObject();
        lines += QStringList{QString::number(number(job, JobKeys::id())),
                             text(job, JobKeys::state()),
                             QString::number(number(job, JobKeys::receivedBytes())),
                             QString::number(number(job, JobKeys::totalBytes())),
                             text(job, JobKeys::path()),
                             text(job, JobKeys::url()),
                             text(job, JobKeys::error())}
                     .join(u'\t')
            + u'\n';
    }
    return lines;
}

QString KovJobsView::asJson(const QJsonArray &jobs)
{
    // Characters that are valid in JSON but would control a terminal. They occur in strings only.
    QString escaped;
    const QString json = QString::fromUtf8(QJsonDocument(jobs).toJson());
    for (const QChar c : json) {
        const bool isPlain = c == u'\n' || printable(c) == c || c.isSurrogate();
        escaped += isPlain ? QString(c)
                           : QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return escaped;
}

bool KovJobsView::isAnyUnderWay(const QJsonArray &jobs)
{
    return std::any_of(jobs.cbegin(), jobs.cend(), [](const QJsonValue &value) {
        const QString state = value.toObject().value(JobKeys::state()).toString();
        return state == u"waiting" || state == u"running";
    });
}
