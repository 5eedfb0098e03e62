#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class MediaRequestsAnalyzer;
class WbeIncomingDownloadsProcessor;

/**
 * "video_sniffer": hands the best candidate for the requested video, or exactly the one that the
 * task names, to the application, with the referrer, cookies and user agent of the browser's own
 * request.
 *
 * Answered when the application has answered. The members of "videoSniffer" and the response's own
 * have the same values: result "1" (added) or "0" (declined), or the error "no_media_found",
 * "invalid arguments" (the task names nothing, or a URL that cannot be downloaded),
 * "app_not_installed" or the application's own text, with details in "error2".
 */
class pmxKovBhIpcVideoSnifferTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    pmxKovBhIpcVideoSnifferTaskProcessor(QSharedPointer<WbeIncomingDownloadsProcessor> downloads,
                                         QSharedPointer<MediaRequestsAnalyzer> analyzer);

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

private:
    const QSharedPointer<WbeIncomingDownloadsProcessor> m_downloads;
    const QSharedPointer<MediaRequestsAnalyzer> m_analyzer;
};
