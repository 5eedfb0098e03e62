#include "urlchecks.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<QStringView, 9> curlSchemes{u"http",   u"https", u"ftp",  u"sftp", u"ftps",
                                                 u"gopher", u"rtmp",  u"rtsp", u"tftp"};

bool isHttpScheme(QStringView scheme) { return scheme == u"http" || scheme == u"https"; }

} // namespace

bool isValid(const QUrl &url) { return url.isValid() && !url.scheme().isEmpty(); }

bool isValidHttpUrl(const QUrl &url) { return isValid(url) && isHttpScheme(url.scheme()); }

bool isValidHttpsUrl(const QUrl &url) { return isValid(url) && url.scheme() == u"https"; }

bool isDownloadableByQt(const QUrl &url)
{
    return url.isValid() && isHttpScheme(url.scheme().toLower());
}

bool isDownloadableByWww(const QUrl &url) { return isDownloadableByQt(url); }

bool isDownloadableByCurl(const QUrl &url)
{
    const QString scheme = url.scheme().toLower();
    return url.isValid()
        && std::find(curlSchemes.begin(), curlSchemes.end(), scheme) != curlSchemes.end();
}

QUrl appendQuery(const QUrl &url, const QString &query, QUrl::ParsingMode mode)
{
    QString wholeQuery = url.query(QUrl::FullyEncoded);
    if (!wholeQuery.isEmpty())
        wholeQuery += u'&';
    wholeQuery += query;
    QUrl result = url;
    result.setQuery(wholeQuery, mode);
    return result;
}

bool isRootHostEqualTo(const QUrl &url, const QString &rootHost)
{
    const QString host = url.host(QUrl::FullyDecoded);
    if (host.compare(rootHost, Qt::CaseInsensitive) == 0)
        return true;
    // There must be a label before the dot: a host that begins with a dot is not a subdomain.
    return host.size() > rootHost.size() + 1 && host.endsWith(rootHost, Qt::CaseInsensitive)
        && host[host.size() - rootHost.size() - 1] == u'.';
}
