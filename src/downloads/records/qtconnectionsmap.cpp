#include "qtconnectionsmap.h"

#include "variantrecordcodec.h"

namespace {

struct PeerConnections : QtHostAndPort {
    int count = 0;
};

constexpr auto peerFields = [](auto &fields) {
    fields.value(u"host"_qs, &PeerConnections::host);
    fields.value(u"port"_qs, &PeerConnections::port);
    fields.value(u"count"_qs, &PeerConnections::count);
};

} // namespace

QVariant toVariant(const QtConnectionsMap &connections)
{
    QVariantList list;
    list.reserve(connections.size());
    for (auto it = connections.cbegin(); it != connections.cend(); ++it)
        list.append(encodedRecord(PeerConnections{{it.key()}, it.value()}, peerFields));
    return list;
}

QtConnectionsMap toConnectionsMap(const QVariant &variant)
{
    QtConnectionsMap map;
    const QVariantList list = variant.toList();
    for (const QVariant &element : list) {
        const auto peer = decodedRecord<PeerConnections>(element.toHash(), peerFields);
        map.insert(peer, peer.count);
    }
    return map;
}
