#pragma once

#include "pmxstreamedvalue.h"

#include <memory>
#include <string>

/**
 * Writes one node of a tree of named nodes.
 *
 * An empty name means this node itself, which then becomes a plain value; that works only while
 * nothing was written to the node. "attribute" is for formats that tell attributes from elements.
 */
class pmxSerializationOutputStream {
public:
    pmxSerializationOutputStream() = default;
    virtual ~pmxSerializationOutputStream() = default;
    pmxSerializationOutputStream(const pmxSerializationOutputStream &) = delete;
    pmxSerializationOutputStream &operator=(const pmxSerializationOutputStream &) = delete;

    /**
     * A new child node; null when the name is empty, and when this node is a plain value or has a
     * plain value of that name.
     * Children of one name form a list; arrayMark makes a list of a single one, too.
     */
    virtual std::shared_ptr<pmxSerializationOutputStream> CreateNode(const std::string &name,
                                                                     bool arrayMark) = 0;

    virtual bool WriteValue(const std::string &name, const std::string &value, bool attribute) = 0;
    virtual bool WriteBoolValue(const std::string &name, bool value, bool attribute) = 0;
    /// Also fails for a value that is infinite or not a number.
    virtual bool WriteDoubleValue(const std::string &name, double value, bool attribute) = 0;

    /// Writes the value as the text that the standard stream insertion of T gives.
    template <typename T> bool WriteValueS(const std::string &name, const T &value, bool attribute)
    {
        return WriteValue(name, pmxTextFromValue(value), attribute);
    }

    /// Writes the tree to the target, once; does nothing when called again.
    virtual void Flush() = 0;
    /// Forgets everything that was written to this node.
    virtual void clear() = 0;
};
