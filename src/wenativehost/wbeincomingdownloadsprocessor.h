#pragma once

#include "abstractdownloadenums.h"
#include "pmxkovbhipcdownloadinfo.h"
#include "pmxserializablesharedobjvector.h"

#include <QHash>
#include <QObject>
#include <QSharedPointer>
#include <QString>

class AppClientModule;

/**
 * Hands downloads of the browser to the application and tells what became of them.
 *
 * A task is known by its id. While its request is under way, another one of the same id takes its
 * place: the outcome of the earlier request is then not reported. Belongs to the main thread.
 */
class WbeIncomingDownloadsProcessor : public QObject {
    Q_OBJECT
public:
    using Downloads = pmxSerializableSharedObjVector<pmxKovBhIpcDownloadInfo>;

    /// The module must be up as long as this object is used.
    explicit WbeIncomingDownloadsProcessor(QSharedPointer<AppClientModule> appClientModule,
                                           QObject *parent = nullptr);
    ~WbeIncomingDownloadsProcessor() override;

    /// Downloads without a valid URL are left out. The outcome is told by finished(), now or later,
    /// or never when the application never answers.
    void process(const QString &id, const Downloads &downloads);

Q_SIGNALS:
    /// Neither added nor aborted means that it failed; error is then "app_not_installed",
    /// "invalid_parameter" (no download had a valid URL) or the application's text.
    void finished(const QString &id, bool added, bool aborted,
                  AbstractDownloadAbortReason abortReason, const QString &error);

public Q_SLOTS:
    void onFinished(qint64 requestId, bool added, bool aborted,
                    AbstractDownloadAbortReason abortReason, const QString &error);

private:
    const QSharedPointer<AppClientModule> m_appClientModule;
    QHash<qint64, QString> m_taskIds;
    /// The inverse.
    QHash<QString, qint64> m_requestIds;
};
