#pragma once

#include <QVariant>
#include <QVariantList>

#include <utility>

/// The elements as a list of variants, each made by encode.
template <typename Container, typename Encode>
QVariantList toVariantListWith(const Container &elements, Encode encode)
{
    QVariantList list;
    list.reserve(elements.size());
    for (const auto &element : elements)
        list.append(QVariant(encode(element)));
    return list;
}

/// The reverse: decode makes an element from a variant.
template <typename Element, typename Decode>
QList<Element> fromVariantListWith(const QVariantList &list, Decode decode)
{
    QList<Element> elements;
    elements.reserve(list.size());
    for (const QVariant &variant : list)
        elements.append(decode(variant));
    return elements;
}

/// Elements that are nested records: decode makes one from a variant hash.
template <typename Element, typename Decode>
QList<Element> fromVariantHashesWith(const QVariantList &list, Decode decode)
{
    return fromVariantListWith<Element>(
        list, [&decode](const QVariant &variant) { return decode(variant.toHash()); });
}
