#include "pmxserializationiostream.h"

#include <utility>

pmxSerializationIoStream::pmxSerializationIoStream(
    std::shared_ptr<pmxSerializationInputStream> input)
    : m_input(std::move(input))
{
}

pmxSerializationIoStream::pmxSerializationIoStream(
    std::shared_ptr<pmxSerializationOutputStream> output)
    : m_output(std::move(output))
{
}

std::shared_ptr<pmxSerializationIoStream>
pmxSerializationIoStream::SelectOrCreateNode(const std::string &name, bool arrayMark)
{
    if (name.empty())
        return std::make_shared<pmxSerializationIoStream>(*this);
    if (m_input) {
        auto node = m_input->SelectNode(name);
        return node ? std::make_shared<pmxSerializationIoStream>(std::move(node)) : nullptr;
    }
    auto node = m_output->CreateNode(name, arrayMark);
    return node ? std::make_shared<pmxSerializationIoStream>(std::move(node)) : nullptr;
}

std::vector<std::shared_ptr<pmxSerializationIoStream>>
pmxSerializationIoStream::SelectNodes(const std::string &name)
{
    std::vector<std::shared_ptr<pmxSerializationIoStream>> streams;
    if (m_input) {
        auto nodes = m_input->SelectNodes(name);
        streams.reserve(nodes.size());
        for (auto &node : nodes)
            streams.push_back(std::make_shared<pmxSerializationIoStream>(std::move(node)));
    }
    return streams;
}

bool pmxSerializationIoStream::SerializeValue(const std::string &name, std::string &value,
                                              bool required, bool attribute)
{
    if (m_input)
        return m_input->ReadValue(name, value, attribute) || !required;
    return m_output->WriteValue(name, value, attribute);
}

bool pmxSerializationIoStream::SerializeBoolValue(const std::string &name, bool &value,
                                                  bool required, bool attribute)
{
    if (m_input)
        return m_input->ReadBoolValue(name, value, attribute) || !required;
    return m_output->WriteBoolValue(name, value, attribute);
}

bool pmxSerializationIoStream::SerializeDoubleValue(const std::string &name, double &value,
                                                    bool required, bool attribute)
{
    if (m_input)
        return m_input->ReadDoubleValue(name, value, attribute) || !required;
    return m_output->WriteDoubleValue(name, value, attribute);
}
