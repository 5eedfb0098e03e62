#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class MediaRequestsAnalyzer;
class WbeIncomingDownloadsProcessor;

/**
 * "video_sniffer": hands the best candidate for the video that the user asked for, or exactly the
 * one that the task names, to the application, with the referrer, cookies and user agent of the
 * browser's own request.
 *
 * Answered when the application has answered; the members of "videoSniffer" and the response's own
 * say the same: result "1" (added) or "0" (refused), or the error "no_media_found",
 * "invalid arguments" (the task says nothing to look for, or its URL is none that can be
 * downloaded), "app_not_installed" or the application's own text, with the detail in "error2".
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
