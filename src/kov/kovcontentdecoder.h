#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

struct z_stream_s;

/// Decodes a Content-Encoding that was not requested (RFC 9110, 8.4.1): "gzip" and "deflate", the
/// latter also without the zlib header, as some servers send it.
class KovContentDecoder {
public:
    /// Receives decoded bytes; returns false when they cannot be written.
    using Sink = std::function<bool(const char *bytes, qint64 size)>;

    /// Null for an unknown encoding.
    static std::unique_ptr<KovContentDecoder> create(const QByteArray &encoding);
    ~KovContentDecoder();
    Q_DISABLE_COPY_MOVE(KovContentDecoder)

    enum class Result { Ok, Broken, NotKept };
    Result decode(const char *bytes, qint64 size, const Sink &sink);
    /// Whether the end of the compressed data was reached.
    bool isAtEnd() const { return m_atEnd; }

private:
    explicit KovContentDecoder(int windowBits);
    bool restart(int windowBits);

    const std::unique_ptr<z_stream_s> m_stream;
    const bool m_mayLackHeader;
    bool m_begun = false;
    bool m_atEnd = false;
};
