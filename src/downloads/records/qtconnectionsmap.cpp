#include "qtconnectionsmap.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

struct PeerConnections {
    QtHostAndPort address;
    int count = 0;
};

template <typename Fields> void describe(Fields &fields, auto &peer)
{
    fields.value(u"host"_qs, peer.address.host);
    fields.value(u"port"_qs, peer.address.port);
    fields.value(u"count"_qs, peer.count);
}

} // namespace

QVariant toVariant(const QtConnectionsMap &connections)
{
    QVariantList list;
    list.reserve(connections.size());
    for (auto it = connections.cbegin(); it != connections.cend(); ++it) {
        VariantFieldsWriter fields;
        const PeerConnections peer{it.key(), it.value()};
        describe(fields, peer);
        list.append(fields.takeHash());
    }
    return list;
}

QtConnectionsMap toConnectionsMap(const QVariant &variant)
{
    QtConnectionsMap map;
    const QVariantList list = variant.toList();
    for (const QVariant &element : list) {
        const QVariantHash hash = element.toHash();
        PeerConnections peer;
        VariantFieldsReader fields(hash);
        describe(fields, peer);
        map.insert(peer.address, peer.count);
    }
    return map;
}
