#pragma once

#include "pmxserializableobjvector.h"
#include "pmxserializationiostream.h"

/// A list of records held by shared pointers of type T, each a node named "item".
template <typename T> class pmxSerializablePtrObjVector : public pmxSerializableObjVector<T> {
public:
    using pmxSerializableObjVector<T>::pmxSerializableObjVector;

    /// Reading replaces the elements. At the first element that fails, stops and returns false; the
    /// elements before it stay.
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return stream->isReading() ? read(stream, flags) : write(stream, flags);
    }

protected:
    /// A new element for the node that is about to be read.
    virtual T create_obj(pmxSerializationIoStream *stream) = 0;

private:
    static constexpr const char *ItemName = "item";

    bool read(pmxSerializationIoStream *stream, unsigned int flags)
    {
        this->clear();
        auto nodes = stream->SelectNodes(ItemName);
        this->reserve(nodes.size());
        for (auto &node : nodes) {
            T item = create_obj(node.get());
            if (!item->Serialize(node.get(), flags))
                return false;
            this->add_item_(std::move(item));
            node.reset(); // so that not all nodes and all records are in memory at once
        }
        return true;
    }

    bool write(pmxSerializationIoStream *stream, unsigned int flags)
    {
        for (const T &item : *this) {
            const auto node = stream->SelectOrCreateNode(ItemName, this->arrayMark());
            if (!node || !item->Serialize(node.get(), flags))
                return false;
        }
        return true;
    }
};
