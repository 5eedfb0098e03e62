#pragma once

#include "abstractnewdownloadrequest.h"
#include "qtvariantstreamwriter.h"

#include <QDataStream>
#include <QIODevice>
#include <QVariantMap>

#include <algorithm>

/// The value with its keys sorted: hashes have no order.
inline QVariant withSortedKeys(const QVariant &value)
{
    if (value.typeId() == QMetaType::QVariantList) {
        QVariantList list = value.toList();
        std::transform(list.cbegin(), list.cend(), list.begin(), withSortedKeys);
        return list;
    }
    if (value.typeId() != QMetaType::QVariantHash)
        return value;
    QVariantMap map;
    for (const auto &[key, member] : value.toHash().asKeyValueRange())
        map.insert(key, withSortedKeys(member));
    return map;
}

/// Whether the downloads, encoded one after another, become the same bytes as their hashes, except
/// for the order of the keys.
inline bool isStreamedAsHashes(const QList<AbstractNewDownloadRequest> &downloads)
{
    NewDownloadsEncoder encoder;
    QVariantList hashes;
    for (const AbstractNewDownloadRequest &download : downloads) {
        encoder.add(download);
        hashes.append(toVariantHash(download));
    }
    const QByteArray streamed =
        QtVariantStreamWriter::writeHash({{QString(), QVariant::fromValue(encoder.downloads())}});
    const QByteArray ofHashes = QtVariantStreamWriter::writeHash({{QString(), hashes}});
    const auto sorted = [](const QByteArray &bytes) {
        QDataStream in(bytes);
        in.setVersion(QDataStream::Qt_5_12);
        QVariantHash hash;
        in >> hash;
        QByteArray again;
        QDataStream out(&again, QIODevice::WriteOnly);
        out << withSortedKeys(hash);
        return again;
    };
    return streamed.size() == ofHashes.size() && sorted(streamed) == sorted(ofHashes);
}
