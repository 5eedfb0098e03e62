#include "abstractnewdownloadrequest.h"

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
