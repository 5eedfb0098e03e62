#pragma once

#include "pmxserializationinputstream.h"

#include <string_view>

namespace picojson {
class value;
}

/**
 * Reads from one JSON value.
 *
 * Nodes share the parsed tree instead of copying their part of it; a node stays usable after the
 * stream it was selected from has been cleared, bound anew or destroyed.
 *
 * What follows the first JSON value of a text is not looked at. Values nested more than 100 levels
 * deep count as malformed. A number too large for a double is held as null.
 *
 * A member that is there but of another kind than is read, and a node that is no object where
 * members are read from it, is logged by name.
 */
class pmxJson2SerializationInputStream : public pmxSerializationInputStream {
public:
    /// Holds null.
    pmxJson2SerializationInputStream() = default;
    explicit pmxJson2SerializationInputStream(std::shared_ptr<const picojson::value> value);

    /// Throws std::runtime_error when the node is not a JSON object, unless the name is empty.
    std::shared_ptr<pmxSerializationInputStream> SelectNode(const std::string &name) const override;
    std::vector<std::shared_ptr<pmxSerializationInputStream>>
    SelectNodes(const std::string &name) const override;
    bool HasNode(const std::string &name) const override;
    bool CanHaveNodes() const override;
    bool ReadValue(const std::string &name, std::string &value, bool attribute) const override;
    bool ReadBoolValue(const std::string &name, bool &value, bool attribute) const override;
    bool ReadDoubleValue(const std::string &name, double &value, bool attribute) const override;
    void clear() override;
    /// Reads the stream to its end.
    bool BindToStream(std::istream *stream) override;

    /// The same as BindToStream() for a text that is in memory already.
    bool BindToText(std::string_view text);

private:
    template <typename T> bool read(const std::string &name, T &value) const;
    /// The member of that name, or the node itself; null when there is none.
    const picojson::value *find(const std::string &name) const;
    std::shared_ptr<pmxSerializationInputStream> share(const picojson::value &part) const;

    /// Points at this node's part of the tree and keeps the whole tree alive. Null stands for a
    /// JSON null.
    std::shared_ptr<const picojson::value> m_value;
    mutable bool m_toldOfNoObject = false;
};
