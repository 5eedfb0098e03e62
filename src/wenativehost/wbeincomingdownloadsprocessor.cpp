#include "wbeincomingdownloadsprocessor.h"

#include "abstractincomingdownloadsprocessor.h"
#include "abstractnewdownloadsrequestjob.h"
#include "appclientmodule.h"
#include "appserverlauncher.h"
#include "cookiestring.h"
#include "pmxtaskerrors.h"
#include "urlchecks.h"

#include <QUrl>

#include <cstdint>
#include <memory>
#include <utility>

namespace {

/// If there are more downloads, they are encoded one by one instead of being kept as records.
constexpr size_t keptAsRecords = 16;

QString fromUtf8(const std::string &text) { return QString::fromStdString(text); }

/// The size that the browser knows from the server; the application detects a truncated file by it.
QList<AbstractDownloadFileInfo> announcedFiles(std::uint64_t size)
{
    AbstractDownloadFileInfo file;
    file.size = static_cast<qint64>(size);
    // A record without a size has 0.
    return file.size > 0 ? QList{file} : QList<AbstractDownloadFileInfo>();
}

/// A cache for one conversion. The downloads of a page have many texts (or numbers) in common: for
/// the same source as before, the previous result is reused and shared. Empty texts and 0 become
/// empty values.
template <typename Value, typename Source = std::string> class Converted {
public:
    template <typename Convert> const Value &of(const Source &source, Convert convert)
    {
        if (source != m_source) {
            m_source = source;
            m_value = convert(source);
        }
        return m_value;
    }

private:
    Source m_source{};
    Value m_value{};
};

/// Converts the extension's download records, one after another.
class NewDownloads {
public:
    explicit NewDownloads(WbeIncomingDownloadsProcessor::Owner owner) : m_owner(owner) { }

    AbstractNewDownloadRequest make(const QUrl &url, const pmxKovBhIpcDownloadInfo &info)
    {
        const auto toUrl = [](const std::string &text) { return QUrl(fromUtf8(text)); };
        const auto download = std::make_shared<AbstractDownloadPersistentInfo>();
        download->createdBy = AbstractDownloadCreatedBy::Browser;
        download->userAgent = m_userAgent.of(info.userAgent, fromUtf8);
        download->preferredFileTitle = fromUtf8(info.suggestedName);

        AbstractDownloadSourceInfo &source = download->source;
        source.url = url;
        source.referer = m_referer.of(info.httpReferer, fromUtf8);
        source.webPageUrl = m_page.of(info.documentUrl, toUrl);
        if (!source.webPageUrl.isValid() && !info.httpReferer.empty()) {
            source.webPageUrl = m_refererPage.of(info.httpReferer, toUrl);
            source.flags |= AbstractDownloadSourceFlag::WebPageUrlIsReferer;
        }
        source.cookies = m_cookies.of(info.httpCookies, [](const std::string &text) {
            return cookiesFromString(fromUtf8(text), u';');
        });
        source.postData = QByteArray::fromStdString(info.httpPostData);
        // The size known for a video may be that of another part of it.
        if (m_owner == WbeIncomingDownloadsProcessor::Owner::Browser)
            download->files = m_files.of(info.fileSize, announcedFiles);
        return {download};
    }

private:
    const WbeIncomingDownloadsProcessor::Owner m_owner;
    Converted<QString> m_userAgent;
    Converted<QString> m_referer;
    Converted<QUrl> m_page;
    Converted<QUrl> m_refererPage;
    Converted<QList<QNetworkCookie>> m_cookies;
    Converted<QList<AbstractDownloadFileInfo>, std::uint64_t> m_files;
};

/// The two enumerations have different numbers.
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

void WbeIncomingDownloadsProcessor::process(Downloads &&downloads, Owner owner,
                                            const Callback &callback)
{
    const auto fail = [&callback](const char *error) {
        callback({.error = QString::fromLatin1(error)});
    };
    if (!m_appClientModule->isConnected()
        && (m_appClientModule->appDoesNotExist() || !AppServerLauncher::serverBinaryCanRun())) {
        fail(pmxTaskErrors::appNotInstalled);
        return;
    }

    const auto application = m_appClientModule->incomingDownloadsProcessor();
    AbstractNewDownloadsRequestJob job = application->createJob();
    job.isBrowsersOwn = owner == Owner::Browser;
    const qsizetype count = fillRequest(job, std::move(downloads), owner);
    if (count == 0) {
        fail(pmxTaskErrors::invalidParameter);
        return;
    }
    job.request.source = AbstractNewDownloadsRequestSource::Browser;
    job.request.selectedDownloads.fill(true, count);

    m_callbacks.insert(job.id, callback);
    application->process(job);
}

qsizetype WbeIncomingDownloadsProcessor::fillRequest(AbstractNewDownloadsRequestJob &job,
                                                     Downloads &&downloads, Owner owner)
{
    AbstractNewDownloadsRequest &request = job.request;
    NewDownloads newDownloads(owner);
    NewDownloadsEncoder encoder;
    const bool areKept = downloads.size() <= keptAsRecords;
    for (auto &each : downloads) {
        // Freed after this iteration, unless the caller keeps it.
        const auto info = std::exchange(each, nullptr);
        const QUrl url(fromUtf8(info->url));
        if (!isValid(url))
            continue;
        const AbstractNewDownloadRequest download = newDownloads.make(url, *info);
        if (areKept)
            request.downloads.append(download);
        else
            encoder.add(download);
        request.preferredDownloadType =
            downloadType(info->mediaKind, request.preferredDownloadType);
    }
    job.encodedDownloads = encoder.downloads();
    return request.downloads.size() + job.encodedDownloads.count();
}

void WbeIncomingDownloadsProcessor::process(const QString &id, const Downloads &downloads,
                                            Owner owner)
{
    process(id, Downloads(downloads), owner);
}

void WbeIncomingDownloadsProcessor::process(const QString &id, Downloads &&downloads, Owner owner)
{
    const qint64 number = ++m_lastNumber;
    m_latest.insert(id, number);
    process(std::move(downloads), owner, [this, id, number](const DownloadsOutcome &outcome) {
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
