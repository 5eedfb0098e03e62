#pragma once

#include "abstractdownloadenums.h"
#include "pmxkovbhipcdownloadinfo.h"
#include "pmxserializablesharedobjvector.h"
#include "pmxtaskresponses.h"

#include <QHash>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <functional>

class AppClientModule;
struct AbstractNewDownloadsRequestJob;

/// Hands downloads of the browser to the application, and reports their outcome. Belongs to the
/// main thread.
class WbeIncomingDownloadsProcessor : public QObject {
    Q_OBJECT
public:
    using Downloads = pmxSerializableSharedObjVector<pmxKovBhIpcDownloadInfo>;

    /// The module must be up as long as this object is used.
    explicit WbeIncomingDownloadsProcessor(QSharedPointer<AppClientModule> appClientModule,
                                           QObject *parent = nullptr);

    /// Who has the downloads if this process ends before they were handed over.
    enum class Owner {
        /// Nobody: the user picked them, so they must be delivered.
        User,
        /// The browser, which continues them.
        Browser,
    };
    using Callback = std::function<void(const DownloadsOutcome &)>;

    /// Downloads without a valid URL are left out. Calls back now or later, or never if the
    /// application never answers. The error of a failure is "app_not_installed",
    /// "invalid_parameter" (no download had a valid URL) or the application's text.
    void process(Downloads &&downloads, Owner owner, const Callback &callback);
    /// The same for a task with an id: the outcome is reported by finished(). If another task with
    /// the same id comes while it is pending, only the outcome of that one is reported.
    void process(const QString &id, const Downloads &downloads, Owner owner = Owner::User);
    /// For many downloads: each record is freed as soon as it has been converted.
    void process(const QString &id, Downloads &&downloads, Owner owner = Owner::User);

Q_SIGNALS:
    void finished(const QString &id, bool added, bool aborted,
                  AbstractDownloadAbortReason abortReason, const QString &error);

public Q_SLOTS:
    void onFinished(qint64 requestId, bool added, bool aborted,
                    AbstractDownloadAbortReason abortReason, const QString &error);

private:
    /// Returns the number of downloads in the request.
    static qsizetype fillRequest(AbstractNewDownloadsRequestJob &job, Downloads &&downloads,
                                 Owner owner);

    const QSharedPointer<AppClientModule> m_appClientModule;
    /// By the id of the request.
    QHash<qint64, Callback> m_callbacks;
    /// For each task id, the number of the latest task.
    QHash<QString, qint64> m_latest;
    qint64 m_lastNumber = 0;
};
