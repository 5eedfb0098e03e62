#pragma once

#include "kovdownloadfile.h"
#include "kovdownloadrequest.h"

#include <QNetworkCookieJar>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class KovDownloadFolder;
class QNetworkAccessManager;
class QNetworkReply;

/**
 * Performs one download over http or https into a folder.
 *
 * Redirects are followed, except from https to http. Each download has its own cookies, which are
 * sent only where they belong, and what servers set on the way is kept for the rest of the way.
 * Of a referrer on the site that was asked first, another site is told no more than the origin.
 * The file appears under its final name when all of it is there; a failed download leaves none.
 */
class KovHttpDownload : public QObject {
    Q_OBJECT
public:
    /// Whether this class can perform it.
    static bool isSupported(const QUrl &url);

    /// Any number of downloads share the network access manager, which need not outlive them.
    KovHttpDownload(KovDownloadRequest request, std::shared_ptr<KovDownloadFolder> folder,
                    QNetworkAccessManager &network, QObject *parent = nullptr);
    ~KovHttpDownload() override;

    void start();

    qint64 receivedBytes() const { return m_receivedBytes; }
    /// -1 while unknown.
    qint64 totalBytes() const { return m_totalBytes; }
    /// Where the file is or will be; empty before the server has answered.
    QString path() const;

Q_SIGNALS:
    /// Once, after start(), from the event loop. An empty error means success.
    void finished(const QString &error);

private Q_SLOTS:
    void onReadyRead();
    void onReplyFinished();

private:
    void addCookies();
    void sendRequest(const QUrl &url);
    QNetworkRequest networkRequest(const QUrl &url) const;
    QByteArray cookieHeader(const QUrl &url) const;
    /// Empty when there is none.
    QByteArray referrerHeader(const QUrl &url) const;
    /// Where the answer sends us; empty when it is no redirect.
    QUrl redirectTarget() const;
    /// False when the target may not be followed.
    bool followRedirect(const QUrl &target);
    QString fileName() const;
    bool isSuccess() const;
    /// Takes what has arrived; false when it cannot be kept.
    bool save();
    QString finish();

    /// Without its body once a redirect has turned the POST into a GET.
    KovDownloadRequest m_request;
    const std::shared_ptr<KovDownloadFolder> m_folder;
    const QPointer<QNetworkAccessManager> m_network;
    QNetworkCookieJar m_cookies;
    QPointer<QNetworkReply> m_reply;
    std::unique_ptr<KovDownloadFile> m_file;
    int m_redirects = 0;
    qint64 m_receivedBytes = 0;
    qint64 m_totalBytes = -1;
    /// Why the download was given up here.
    QString m_error;
};
