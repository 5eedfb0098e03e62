#pragma once

#include "qtconnectionsmap.h"

#include <QList>
#include <QStringList>
#include <QVariantHash>
#include <QVariantList>

/// What a running download is doing. Speeds are in bytes per second, the payload's without what the
/// protocols add.
struct AbstractLiveDownloadRunTimeInfo {
    qint64 downloadSpeed = 0;
    qint64 uploadSpeed = 0;
    qint64 payloadDownloadSpeed = 0;
    qint64 payloadUploadSpeed = 0;
    bool running = false;
    bool stopping = false;
    /// Names of what is being done, such as "check", and how far each is, in percent or -1.
    QStringList tasks;
    QList<int> tasksProgress;
    QtConnectionsMap connections;
    /// What the engine module tells besides.
    QVariantHash details;

    bool operator==(const AbstractLiveDownloadRunTimeInfo &) const = default;
};

QVariantHash toVariantHash(const AbstractLiveDownloadRunTimeInfo &info);
AbstractLiveDownloadRunTimeInfo toLiveDownloadRunTimeInfo(const QVariantHash &hash);
QList<int> toDownloadTasksProgress(const QVariantList &list);
