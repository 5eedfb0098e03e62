#pragma once

#include "pmxserializationoutputstream.h"
#include "pmxserializationoutputstreambinding.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace picojson {
class value;
}

/**
 * Builds one JSON value, an object unless a value was written under the empty name, and writes it
 * to the bound stream in compact form.
 *
 * Destroying a bound stream that was not flushed flushes it.
 */
class pmxJson2SerializationOutputStream : public pmxSerializationOutputStream,
                                          public pmxSerializationOutputStreamBinding {
public:
    pmxJson2SerializationOutputStream() = default;
    ~pmxJson2SerializationOutputStream() override;

    std::shared_ptr<pmxSerializationOutputStream> CreateNode(const std::string &name,
                                                             bool arrayMark) override;
    bool WriteValue(const std::string &name, const std::string &value, bool attribute) override;
    bool WriteBoolValue(const std::string &name, bool value, bool attribute) override;
    bool WriteDoubleValue(const std::string &name, double value, bool attribute) override;
    void Flush() override;
    void clear() override;
    void BindToStream(std::ostream *stream) override;

    /// The text that Flush() writes.
    std::string text() const;
    /// The value with all child nodes as they are now. A child replaces a plain value of its name.
    picojson::value getResultingJsonValue() const;

private:
    struct Child {
        std::shared_ptr<pmxJson2SerializationOutputStream> node;
        bool arrayMark;
    };
    using Children = std::multimap<std::string, Child>;
    /// A plain value with its name, as JSON text.
    struct Member {
        std::string name;
        std::string text;
    };

    /// The text to write of the value of that name, empty; null when there can be none.
    std::string *textOf(const std::string &name);
    /// Where the member of that name is or would be.
    std::vector<Member>::iterator placeOf(const std::string &name);
    void appendText(std::string &out) const;
    static void appendChildren(std::string &out, Children::const_iterator first,
                               Children::const_iterator end);
    /// Flush(), for the destructor, which can call no virtual function.
    void flush();

    /// Sorted by their names.
    std::vector<Member> m_members;
    /// Children of one name are adjacent, in the order of their creation.
    Children m_children;
    /// What was written under the empty name, if anything: the node is no object then.
    std::optional<std::string> m_onlyValue;
    std::ostream *m_target = nullptr;
    bool m_flushed = false;
};
