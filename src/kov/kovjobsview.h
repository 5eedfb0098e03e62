#pragma once

#include <QJsonArray>
#include <QString>

/// Formats the list of downloads for people and for scripts. Text from servers cannot control the
/// terminal.
namespace KovJobsView {

/// One line per job, at most so many columns wide.
QString forTerminal(const QJsonArray &jobs, int columns);
/// One line per job, separated by tabs: id, state, bytes received, bytes in total, path, URL,
/// error.
QString forScripts(const QJsonArray &jobs);
QString asJson(const QJsonArray &jobs);

/// Whether a download is waiting or running.
bool isAnyUnderWay(const QJsonArray &jobs);

/// "1.5 GiB".
QString sizeText(qint64 bytes);
/// "2 min 5 s".
QString durationText(qint64 seconds);

} // namespace KovJobsView
