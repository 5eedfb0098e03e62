#include "abstractfileinfo.h"

#include "abstractfileinfofields.h"
#include "variantrecordcodec.h"

QVariantHash AbstractFileInfo::toVariantHash() const
{
    return encodedRecord(*this, abstractFileInfoFields);
}

AbstractFileInfo AbstractFileInfo::fromVariantHash(const QVariantHash &hash)
{
    return decodedRecord<AbstractFileInfo>(hash, abstractFileInfoFields);
}
