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

/// Hands downloads of the browser to the application and tells what became of them. Belongs to the
/// main thread.
class WbeIncomingDownloadsProcessor : public QObject {
    Q_OBJECT
public:
    using Downloads = pmxSerializableSharedObjVector<pmxKovBhIpcDownloadInfo>;

    /// The module must be up as long as this object is used.
    explicit WbeIncomingDownloadsProcessor(QSharedPointer<AppClientModule> appClientModule,
                                           QObject *parent = nullptr);

    /// Where the downloads are when this process ends before they were handed over.
    enum class Owner {
        /// Nowhere else: the user picked them, so they must be delivered.
        User,
        /// In the browser, which continues them.
        Browser,
    };
    using Callback = std::function<void(const DownloadsOutcome &)>;

    /// Downloads without a valid URL are left out. Calls back now or later, or never when the
    /// application never answers. An outcome that failed has for its error "app_not_installed",
    /// "invalid_parameter" (no download had a valid URL) or the application's text.
    void process(Downloads &&downloads, Owner owner, const Callback &callback);
    /// The same for a task that is known by its id: the outcome is told by finished(). While it is
    /// under way, another one of the same id takes its place, and its own outcome is not
    /// reported.
    void process(const QString &id, const Downloads &downloads, Owner owner = Owner::User);
    /// Of many downloads, each ends as soon as it has been converted.
    void process(const QString &id, Downloads &&downloads, Owner owner = Owner::User);

Q_SIGNALS:
    void finished(const QString &id, bool added, bool aborted,
                  AbstractDownloadAbortReason abortReason, const QString &error);

public Q_SLOTS:
    void onFinished(qint64 requestId, bool added, bool aborted,
                    AbstractDownloadAbortReason abortReason, const QString &error);

private:
    /// Returns how many downloads the request has then.
    static qsizetype fillRequest(AbstractNewDownloadsRequestJob &job, Downloads &&downloads,
                                 Owner owner);

    const QSharedPointer<AppClientModule> m_appClientModule;
    /// By the number of the request.
    QHash<qint64, Callback> m_callbacks;
    /// Which of the tasks of an id was the last one.
    QHash<QString, qint64> m_latest;
    qint64 m_lastNumber = 0;
};
