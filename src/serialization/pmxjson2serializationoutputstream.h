#pragma once

#include "pmxserializationoutputstream.h"
#include "pmxserializationoutputstreambinding.h"

#include <map>

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
    pmxJson2SerializationOutputStream();
    ~pmxJson2SerializationOutputStream() override;

    std::shared_ptr<pmxSerializationOutputStream> CreateNode(const std::string &name,
                                                             bool arrayMark) override;
    bool WriteValue(const std::string &name, const std::string &value, bool attribute) override;
    bool WriteBoolValue(const std::string &name, bool value, bool attribute) override;
    bool WriteDoubleValue(const std::string &name, double value, bool attribute) override;
    void Flush() override;
    void clear() override;
    void BindToStream(std::ostream *stream) override;

    /// The value with all child nodes as they are now. A child replaces a plain value of its name.
    picojson::value getResultingJsonValue() const;

private:
    struct Child {
        std::shared_ptr<pmxJson2SerializationOutputStream> node;
        bool arrayMark;
    };

    bool write(const std::string &name, picojson::value &&value);
    /// Flush(), for the destructor, which can call no virtual function.
    void flush();

    /// Never null. Plain members only; the children are put in when the result is built.
    std::unique_ptr<picojson::value> m_value;
    /// Children of one name are adjacent, in the order of their creation.
    std::multimap<std::string, Child> m_children;
    std::ostream *m_target = nullptr;
    bool m_flushed = false;
};
