#pragma once

#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>
#include <QString>

#include <memory>

class KovDownloadFolder;
class KovPartialFile;

/// Gives a file that is whole its final name, as soon as a browser does not hold that any more.
class KovFileNaming : public QObject {
    Q_OBJECT
public:
    /// A browser that has just been told to give up its own download removes its placeholder; one
    /// that has not done so by then keeps it.
    static constexpr int browserLetsGoWithinMs = 5000;

    /// The file and the folder outlive this.
    KovFileNaming(KovPartialFile &file, KovDownloadFolder &folder, QString name,
                  QtClock &clock = QtClock::system(), QObject *parent = nullptr);
    ~KovFileNaming() override;

    void start();

Q_SIGNALS:
    /// When this returns, the file is moved there, unless something comes into its way.
    void naming(const QString &path);
    /// Once, the last signal; the error is empty on success.
    void named(const QString &error);

private:
    void giveName();

    KovPartialFile &m_file;
    KovDownloadFolder &m_folder;
    const QString m_name;
    const std::unique_ptr<QtSingleShotTimer> m_timer;
    int m_waitedMs = 0;
};
