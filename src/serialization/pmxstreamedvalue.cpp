#include "pmxstreamedvalue.h"

#include <streambuf>

namespace {

/// Reads a text in place, without a copy.
class TextBuffer : public std::streambuf {
public:
    void setText(std::string_view text)
    {
        // The base class wants pointers to non-const; it only reads.
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
