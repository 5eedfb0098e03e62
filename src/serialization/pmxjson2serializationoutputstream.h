#pragma once

#include "pmxserializationoutputstream.h"
#include "pmxserializationoutputstreambinding.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
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
    using Children = std::multimap<std::string, Child, std::less<>>;
    /// A part of m_texts.
    struct Piece {
        std::size_t at;
        std::size_t size;
    };
    /// A plain value, as JSON text, with its name.
    struct Member {
        Piece name;
        Piece text;
    };

    std::string_view viewOf(const Piece &piece) const;
    /// Calls the function with a string to append the value's JSON text to. False if there can be
    /// no value of that name.
    template <typename AppendText>
    bool writeMember(std::string_view name, const AppendText &appendText);
    /// Where the member of that name is or would be.
    std::vector<Member>::iterator placeOf(std::string_view name);
    bool isMemberAt(std::vector<Member>::iterator place, std::string_view name) const;
    /// Whether a value was written under the empty name: the node is no object then.
    bool isPlainValue() const;
    void appendText(std::string &out) const;
    static void appendChildren(std::string &out, Children::const_iterator first,
                               Children::const_iterator end);
    /// Flush(), for the destructor, which can call no virtual function.
    void flush();

    /// The names and values of all members, in the order in which they were written.
    std::string m_texts;
    /// Sorted by their names.
    std::vector<Member> m_members;
    /// Children of one name are adjacent, in the order of their creation.
    Children m_children;
    std::ostream *m_target = nullptr;
    bool m_flushed = false;
};
