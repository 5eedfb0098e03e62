#include "abstractnewdownloadrequest.h"

#include "streamfieldswriter.h"

namespace {

QString infoKey() { return QStringLiteral("info"); }

} // namespace

bool AbstractNewDownloadRequest::operator==(const AbstractNewDownloadRequest &other) const
{
    if (!info || !other.info)
        return info == other.info;
    return *info == *other.info;
}

QVariantHash toVariantHash(const AbstractNewDownloadRequest &request)
{
    QVariantHash hash;
    if (request.info)
        hash.insert(infoKey(), toVariantHash(*request.info));
    return hash;
}

AbstractNewDownloadRequest toNewDownloadRequest(const QVariantHash &hash)
{
    return {std::make_shared<AbstractDownloadPersistentInfo>(
        toDownloadInfo(hash.value(infoKey()).toHash()))};
}

NewDownloadsEncoder::NewDownloadsEncoder() : m_context(std::make_unique<RecordsStreamContext>()) { }

NewDownloadsEncoder::~NewDownloadsEncoder() = default;

void NewDownloadsEncoder::add(const AbstractNewDownloadRequest &download)
{
    m_writer.clear();
    m_writer.writeHashHead();
    m_writer.writeCount(download.info ? 1 : 0);
    if (download.info) {
        m_writer.writeKey(infoKey());
        m_writer.writeHashHead();
        m_writer.append(toStream(*m_context, *download.info));
    }
    m_downloads.append(m_writer.bytes());
}
