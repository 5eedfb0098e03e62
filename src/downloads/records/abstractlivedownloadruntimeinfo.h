#pragma once

#include "qtconnectionsmap.h"

#include <QList>
#include <QStringList>
#include <QVariantHash>
#include <QVariantList>

/// The activity of a running download. Speeds are in bytes per second; those of the payload are
/// without protocol overhead.
struct AbstractLiveDownloadRunTimeInfo {
    qint64 downloadSpeed = 0;
    qint64 uploadSpeed = 0;
    qint64 payloadDownloadSpeed = 0;
    qint64 payloadUploadSpeed = 0;
    bool running = false;
    bool stopping = false;
    /// The names of the current tasks, such as "check", and the progress of each, in percent or -1.
    QStringList tasks;
    QList<int> tasksProgress;
    QtConnectionsMap connections;
    /// Further values of the engine module.
    QVariantHash details;

    bool operator==(const AbstractLiveDownloadRunTimeInfo &) const = default;
};

QVariantHash toVariantHash(const AbstractLiveDownloadRunTimeInfo &info);
AbstractLiveDownloadRunTimeInfo toLiveDownloadRunTimeInfo(const QVariantHash &hash);
QList<int> toDownloadTasksProgress(const QVariantList &list);
