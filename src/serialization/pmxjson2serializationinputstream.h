#pragma once

#include "pmxserializationinputstream.h"

#include <string_view>

struct pmxJsonNode;

/**
 * Reads from one JSON value.
 *
 * Nodes share the parsed text instead of copying their part of it; a node stays usable after the
 * stream from which it was selected has been cleared, rebound or destroyed.
 *
 * Text after the first JSON value is ignored. Values nested more than 100 levels deep count as
 * malformed. A number too large for a double is read as null.
 *
 * A member of the wrong type, and a node that is not an object although members are read from it,
 * are logged by name.
 */
class pmxJson2SerializationInputStream : public pmxSerializationInputStream {
public:
    /// Holds null.
    pmxJson2SerializationInputStream() = default;
    explicit pmxJson2SerializationInputStream(std::shared_ptr<const pmxJsonNode> node);

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

    /// Like BindToStream(), for a text in memory.
    bool BindToText(std::string text);
    /// The same without a copy of the text, which must stay where it is as long as nodes that were
    /// selected from it are used.
    bool BindToLastingText(std::string_view text);

private:
    /// The member of that name, or the node itself; null when there is none.
    const pmxJsonNode *find(std::string_view name) const;
    /// The same, if it is a value of this kind; else null.
    template <typename Kind> const pmxJsonNode *findOfKind(std::string_view name, Kind kind) const;
    std::shared_ptr<pmxSerializationInputStream> share(const pmxJsonNode &part) const;

    /// Points at this node's part of the text's nodes and keeps all of them alive. Null stands for
    /// a JSON null.
    std::shared_ptr<const pmxJsonNode> m_node;
    mutable bool m_toldOfNoObject = false;
};
