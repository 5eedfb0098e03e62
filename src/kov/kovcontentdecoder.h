#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

struct z_stream_s;

/// Undoes what a server has done to a file on the way although nobody asked for it (RFC 9110,
/// 8.4.1): "gzip" and "deflate", the latter also without its header, as some send it.
class KovContentDecoder {
public:
    /// Takes decoded bytes; false when they cannot be kept.
    using Sink = std::function<bool(const char *bytes, qint64 size)>;

    /// Null for an encoding that is not known.
    static std::unique_ptr<KovContentDecoder> create(const QByteArray &encoding);
    ~KovContentDecoder();
    Q_DISABLE_COPY_MOVE(KovContentDecoder)

    enum class Result { Ok, Broken, NotKept };
    Result decode(const char *bytes, qint64 size, const Sink &sink);
    /// Whether what was decoded is whole.
    bool isAtEnd() const { return m_atEnd; }

private:
    explicit KovContentDecoder(int windowBits);
    bool restart(int windowBits);

    const std::unique_ptr<z_stream_s> m_stream;
    const bool m_mayLackHeader;
    bool m_begun = false;
    bool m_atEnd = false;
};
