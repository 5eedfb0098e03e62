#include "kovcontentdecoder.h"

#define ZLIB_CONST // zlib does not write to its input
#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>

namespace {

// See inflateInit2() in zlib.h: the format is encoded in the window size.
constexpr int gzipHeader = 16 + MAX_WBITS;
constexpr int zlibHeader = MAX_WBITS;
constexpr int noHeader = -MAX_WBITS;

constexpr size_t decodedPieceBytes = size_t{64} * 1024;

} // namespace

std::unique_ptr<KovContentDecoder> KovContentDecoder::create(const QByteArray &encoding)
{
    if (encoding == "gzip" || encoding == "x-gzip")
        return std::unique_ptr<KovContentDecoder>(new KovContentDecoder(gzipHeader));
    if (encoding == "deflate")
        return std::unique_ptr<KovContentDecoder>(new KovContentDecoder(zlibHeader));
    return nullptr;
}

KovContentDecoder::KovContentDecoder(int windowBits)
    : m_stream(std::make_unique<z_stream>()), m_mayLackHeader(windowBits == zlibHeader)
{
    restart(windowBits);
}

KovContentDecoder::~KovContentDecoder() { inflateEnd(m_stream.get()); }

bool KovContentDecoder::restart(int windowBits)
{
    inflateEnd(m_stream.get());
    *m_stream = {};
    return inflateInit2(m_stream.get(), windowBits) == Z_OK;
}

KovContentDecoder::Result KovContentDecoder::decode(const char *bytes, qint64 size,
                                                    const Sink &sink)
{
    std::array<char, decodedPieceBytes> piece = {};
    while (size > 0 && !m_atEnd) {
        const auto step =
            static_cast<uInt>(std::min<qint64>(size, std::numeric_limits<uInt>::max()));
        m_stream->next_in = reinterpret_cast<const Bytef *>(bytes);
        m_stream->avail_in = step;
        m_stream->next_out = reinterpret_cast<Bytef *>(piece.data());
        m_stream->avail_out = decodedPieceBytes;
        const int status = inflate(m_stream.get(), Z_NO_FLUSH);
        if (status == Z_DATA_ERROR && !m_begun && m_mayLackHeader && m_stream->total_out == 0) {
            m_begun = true;
            if (!restart(noHeader))
                return Result::Broken;
            continue;
        }
        if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR)
            return Result::Broken;
        const auto decoded = static_cast<qint64>(decodedPieceBytes - m_stream->avail_out);
        const auto taken = static_cast<qint64>(step - m_stream->avail_in);
        if (decoded > 0 && !sink(piece.data(), decoded))
            return Result::NotKept;
        m_begun = m_begun || decoded > 0;
        m_atEnd = status == Z_STREAM_END;
        bytes += taken;
        size -= taken;
    }
    return Result::Ok;
}
