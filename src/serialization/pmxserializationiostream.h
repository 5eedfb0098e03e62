#pragma once

#include "pmxserializationinputstream.h"
#include "pmxserializationoutputstream.h"

#include <memory>
#include <string>
#include <vector>

/**
 * The node that a record reads itself from or writes itself to, without knowing which.
 *
 * An empty name means the node itself. The results of the Serialize operations: true on success;
 * a failed read is a failure only when the member is required, and leaves the value as it was; a
 * failed write always is one.
 */
class pmxSerializationIoStream {
public:
    explicit pmxSerializationIoStream(std::shared_ptr<pmxSerializationInputStream> input);
    explicit pmxSerializationIoStream(std::shared_ptr<pmxSerializationOutputStream> output);

    bool isReading() const { return m_input != nullptr; }
    /// Reading: whether there is a member of that name, of any type. Writing: false.
    bool hasMember(const std::string &name) const { return m_input && m_input->HasNode(name); }
    /// Reading: whether this node is of a kind that can have members. Writing: true.
    bool canHaveMembers() const { return !m_input || m_input->CanHaveNodes(); }

    /**
     * Reading: the member of that name, null when it is missing. Writing: a new child node, null
     * when there cannot be one. arrayMark: written as a list even when it is the only one.
     *
     * Throws std::runtime_error when it reads from a node that cannot have members.
     */
    std::shared_ptr<pmxSerializationIoStream> SelectOrCreateNode(const std::string &name,
                                                                 bool arrayMark);
    /// Reading: the elements of the list of that name; a single value is a list of one. Writing:
    /// none.
    std::vector<std::shared_ptr<pmxSerializationIoStream>> SelectNodes(const std::string &name);

    bool SerializeValue(const std::string &name, std::string &value, bool required,
                        bool attribute = false);
    bool SerializeBoolValue(const std::string &name, bool &value, bool required,
                            bool attribute = false);
    bool SerializeDoubleValue(const std::string &name, double &value, bool required,
                              bool attribute = false);
    /// For numbers, enumerations and bools that travel as texts ("5", "1").
    template <typename T>
    bool SerializeValueS(const std::string &name, T &value, bool required, bool attribute = false)
    {
        if (m_input)
            return m_input->ReadValueS(name, value, attribute) || !required;
        return m_output->WriteValueS(name, value, attribute);
    }

private:
    /// Exactly one of the two is set.
    std::shared_ptr<pmxSerializationInputStream> m_input;
    std::shared_ptr<pmxSerializationOutputStream> m_output;
};
