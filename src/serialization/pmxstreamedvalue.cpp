#include "pmxstreamedvalue.h"

#include <streambuf>

namespace {

/// Reads a text where it stands.
class TextBuffer : public std::streambuf {
public:
    void setText(std::string_view text)
    {
        // The base class reads through pointers to what could be written to; nothing is.
        char *const begin = const_cast<char *>(text.data());
        setg(begin, begin, begin + text.size());
    }
};

class TextStream : public std::istream {
public:
    TextStream() : std::istream(nullptr)
    {
        imbue(std::locale::classic());
        rdbuf(&m_buffer);
    }

    void setText(std::string_view text)
    {
        m_buffer.setText(text);
        clear();
    }

private:
    TextBuffer m_buffer;
};

} // namespace

std::istream &pmxStreamOverText(std::string_view text)
{
    thread_local TextStream stream;
    stream.setText(text);
    return stream;
}
