#pragma once

#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>
#include <QString>

#include <memory>

class KovDownloadFolder;
class KovPartialFile;

/// Gives a complete file its final name, once no browser's own copy has that name any more.
class KovFileNaming : public QObject {
    Q_OBJECT
public:
    /// A browser whose download was cancelled removes its file; if it has not done so by then, the
    /// file gets another name.
    static constexpr int browserRemovalTimeoutMs = 5000;

    /// The file and the folder outlive this.
    KovFileNaming(KovPartialFile &file, KovDownloadFolder &folder, QString name,
                  QtClock &clock = QtClock::system(), QObject *parent = nullptr);
    ~KovFileNaming() override;

    void start();

Q_SIGNALS:
    /// The file is moved to this path after the slots return, unless the path is taken meanwhile.
    void naming(const QString &path);
    /// Once, the last signal; the error is empty on success.
    void named(const QString &error);

private:
    void giveName(const QString &freePath);

    KovPartialFile &m_file;
    KovDownloadFolder &m_folder;
    const QString m_name;
    const std::unique_ptr<QtSingleShotTimer> m_timer;
    int m_waitedMs = 0;
};
