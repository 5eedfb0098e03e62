#pragma once

#include "pmxstreamedvalue.h"

#include <istream>
#include <memory>
#include <string>
#include <vector>

/**
 * Reads one node of a tree of named nodes.
 *
 * An empty name means this node itself. A read that fails leaves the value as it was. "attribute"
 * is for formats that tell attributes from elements.
 */
class pmxSerializationInputStream {
public:
    pmxSerializationInputStream() = default;
    virtual ~pmxSerializationInputStream() = default;
    pmxSerializationInputStream(const pmxSerializationInputStream &) = delete;
    pmxSerializationInputStream &operator=(const pmxSerializationInputStream &) = delete;

    /// The child of that name, null when there is none.
    virtual std::shared_ptr<pmxSerializationInputStream>
    SelectNode(const std::string &name) const = 0;
    /// The children of that name, in their order.
    virtual std::vector<std::shared_ptr<pmxSerializationInputStream>>
    SelectNodes(const std::string &name) const = 0;

    /// Whether there is a child of that name, of any type. False for a node that can have none.
    virtual bool HasNode(const std::string & /*name*/) const { return false; }
    /// Whether this node is of a kind that can have children.
    virtual bool CanHaveNodes() const { return true; }

    virtual bool ReadValue(const std::string &name, std::string &value, bool attribute) const = 0;
    virtual bool ReadBoolValue(const std::string &name, bool &value, bool attribute) const = 0;
    virtual bool ReadDoubleValue(const std::string &name, double &value, bool attribute) const = 0;

    /// Reads a text and converts it with the standard stream extraction of T.
    template <typename T> bool ReadValueS(const std::string &name, T &value, bool attribute) const
    {
        std::string text;
        return ReadValue(name, text, attribute) && pmxValueFromText(text, value);
    }

    /// Releases the node; nothing can be read until the next BindToStream().
    virtual void clear() = 0;
    /// Parses the text of the whole tree; false, and an empty node, when it is malformed.
    virtual bool BindToStream(std::istream *stream) = 0;
};
