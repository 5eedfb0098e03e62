#pragma once

#include "pmxserializable.h"

#include <utility>
#include <vector>

/// A list that is part of a record. This base holds elements and does not serialize them.
template <typename T>
class pmxSerializableObjVector : public pmxSerializable, public std::vector<T> {
public:
    /// singleAsObject: a list of one element is written as that element alone, not as an array.
    explicit pmxSerializableObjVector(bool singleAsObject = false)
        : m_singleAsObject(singleAsObject)
    {
    }

    void add_item_(T &&item) { this->push_back(std::move(item)); }

protected:
    /// The array mark of the nodes that the list writes.
    bool arrayMark() const { return !m_singleAsObject; }

private:
    bool m_singleAsObject;
};
