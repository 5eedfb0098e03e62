#include "wbeincomingdownloadsprocessor.h"

#include "abstractincomingdownloadsprocessor.h"
#include "abstractnewdownloadsrequestjob.h"
#include "appclientmodule.h"
#include "appserverlauncher.h"
#include "cookiestring.h"
#include "urlchecks.h"

#include <QUrl>

#include <memory>
#include <utility>

namespace {

QString fromUtf8(const std::string &text) { return QString::fromStdString(text); }

/// The size that the browser was told, by which the application knows a cut file.
QList<AbstractDownloadFileInfo> announcedFiles(const pmxKovBhIpcDownloadInfo &info)
{
    AbstractDownloadFileInfo file;
    file.size = static_cast<qint64>(info.fileSize);
    // A record that says nothing of the size has 0.
    return file.size > 0 ? QList{file} : QList<AbstractDownloadFileInfo>();
}

AbstractNewDownloadRequest newDownload(const QUrl &url, const pmxKovBhIpcDownloadInfo &info)
{
    const auto download = std::make_shared<AbstractDownloadPersistentInfo>();
    download->createdBy = AbstractDownloadCreatedBy::Browser;
    download->userAgent = fromUtf8(info.userAgent);
    download->preferredFileTitle = fromUtf8(info.suggestedName);

    AbstractDownloadSourceInfo &source = download->source;
    source.url = url;
    source.referer = fromUtf8(info.httpReferer);
    source.webPageUrl = QUrl(fromUtf8(info.documentUrl));
    if (!source.webPageUrl.isValid() && !info.httpReferer.empty()) {
        source.webPageUrl = QUrl(source.referer);
        source.flags |= AbstractDownloadSourceFlag::WebPageUrlIsReferer;
    }
    source.cookies = cookiesFromString(fromUtf8(info.httpCookies), u';');
    source.postData = QByteArray::fromStdString(info.httpPostData);
    return {download};
}

/// The two ends number the kinds of media differently.
AbstractDownloadType downloadType(pmxKovBhIpcDownloadInfo::MediaKind kind,
                                  AbstractDownloadType otherwise)
{
    switch (kind) {
    case pmxKovBhIpcDownloadInfo::VideoMediaKind:
        return AbstractDownloadType::Video;
    case pmxKovBhIpcDownloadInfo::AudioMediaKind:
        return AbstractDownloadType::Audio;
    case pmxKovBhIpcDownloadInfo::StreamMediaKind:
        return AbstractDownloadType::MediaStream;
    case pmxKovBhIpcDownloadInfo::NoMediaKind:
        break;
    }
    return otherwise;
}

} // namespace

WbeIncomingDownloadsProcessor::WbeIncomingDownloadsProcessor(
    QSharedPointer<AppClientModule> appClientModule, QObject *parent)
    : QObject(parent), m_appClientModule(std::move(appClientModule))
{
    connect(m_appClientModule->incomingDownloadsProcessor().data(),
            &AbstractIncomingDownloadsProcessor::finished, this,
            &WbeIncomingDownloadsProcessor::onFinished);
}

void WbeIncomingDownloadsProcessor::process(const Downloads &downloads, Owner owner,
                                            const Callback &callback)
{
    const auto fail = [&callback](const QString &error) { callback({.error = error}); };
    if (!m_appClientModule->isConnected()
        && (m_appClientModule->appDoesNotExist() || !AppServerLauncher::serverBinaryCanRun())) {
        fail(QStringLiteral("app_not_installed"));
        return;
    }

    const auto application = m_appClientModule->incomingDownloadsProcessor();
    AbstractNewDownloadsRequestJob job = application->createJob();
    job.isBrowsersOwn = owner == Owner::Browser;
    AbstractNewDownloadsRequest &request = job.request;
    request.source = AbstractNewDownloadsRequestSource::Browser;
    request.downloads.reserve(static_cast<qsizetype>(downloads.size()));
    for (const auto &info : downloads) {
        const QUrl url(fromUtf8(info->url));
        if (!isValid(url))
            continue;
        request.downloads.append(newDownload(url, *info));
        // What is known of a video's size may be of another part of it.
        if (owner == Owner::Browser)
            request.downloads.constLast().info->files = announcedFiles(*info);
        request.preferredDownloadType =
            downloadType(info->mediaKind, request.preferredDownloadType);
    }
    if (request.downloads.isEmpty()) {
        fail(QStringLiteral("invalid_parameter"));
        return;
    }
    request.selectedDownloads.fill(true, request.downloads.size());

    m_callbacks.insert(job.id, callback);
    application->process(job);
}

void WbeIncomingDownloadsProcessor::process(const QString &id, const Downloads &downloads,
                                            Owner owner)
{
    const qint64 number = ++m_lastNumber;
    m_latest.insert(id, number);
    process(downloads, owner, [this, id, number](const DownloadsOutcome &outcome) {
        if (m_latest.value(id) != number)
            return;
        m_latest.remove(id);
        Q_EMIT finished(id, outcome.added, outcome.aborted, outcome.abortReason, outcome.error);
    });
}

void WbeIncomingDownloadsProcessor::onFinished(qint64 requestId, bool added, bool aborted,
                                               AbstractDownloadAbortReason abortReason,
                                               const QString &error)
{
    if (const Callback callback = m_callbacks.take(requestId))
        callback({added, aborted, abortReason, error});
}
