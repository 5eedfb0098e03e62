#pragma once

#include <QJsonArray>
#include <QString>

/// Shows the downloads, as the service tells of them, to people and to scripts. Nothing that a
/// server said reaches a terminal as anything but text.
namespace KovJobsView {

/// Each job on a line that is no wider than so many columns.
QString forTerminal(const QJsonArray &jobs, int columns);
/// Each job on a line with tabs between: number, state, bytes received, bytes in all, path, URL,
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
