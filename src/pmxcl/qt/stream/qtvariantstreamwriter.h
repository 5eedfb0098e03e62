#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantHash>

#include <array>

class QtEncodedVariantList;

/**
 * Writes variants, byte for byte in QDataStream's format (version Qt_5_12).
 *
 * QDataStream writes every number and every length through a device, and its buffer grows by
 * doubling. This class writes the usual types of messages directly, at a cost per item that does
 * not grow with the message. A QtEncodedVariantList is written as the list that it represents.
 */
class QtVariantStreamWriter {
public:
    static QByteArray writeHash(const QHash<QString, QVariant> &hash);
    /// The same in pieces, which share the bytes of lists that were already encoded.
    static QList<QByteArray> writeHashInPieces(const QHash<QString, QVariant> &hash);

    void writeVariant(const QVariant &value);
    /// The parts of a variant that is a hash: the head, the number of entries, and for each the
    /// key, followed by a variant.
    void writeHashHead();
    /// The head of a variant that is a list; the count and the variants follow.
    void writeListHead();
    void writeCount(quint32 count);
    void writeKey(const QString &key) { writeString(key); }
    void append(QByteArrayView bytes) { m_bytes += bytes; }

    const QByteArray &bytes() const { return m_bytes; }
    /// Exchanges the written bytes for others; clear() must follow.
    void swap(QByteArray &bytes) { m_bytes.swap(bytes); }
    /// Starts over, in the same memory.
    void clear();

private:
    void writeDateTime(const QVariant &value);
    void writeByQt(const QVariant &value);
    void writeHead(const QVariant &value);
    void writeHead(int typeId, bool isNull);
    void writeEncoded(const QtEncodedVariantList &list);
    /// A variant that is a number, with the given bytes.
    template <typename Number> void writeNumber(const QVariant &value, Number number);
    void writeList(const QVariantList &list);
    void reserveForItems(qsizetype sampleSize, qsizetype moreItems);
    template <typename Map> void writeMap(const Map &map);
    void writeNestedHash(const QVariantHash &hash);
    void writeString(const QString &text);
    void writeBytes(const QByteArray &bytes);
    template <typename Number> void write(Number number);
    /// Appends so many uninitialized bytes, which the caller must write first.
    char *append(qsizetype size);

    /// A hash that others may share their data with, and where it was written.
    struct WrittenHash {
        QVariantHash hash;
        qsizetype begin = 0;
        qsizetype size = 0;
    };

    /// The finished pieces, and the current one.
    QList<QByteArray> m_pieces;
    QByteArray m_bytes;
    /// Recently written hashes: the records of a long list share those with only default values.
    std::array<WrittenHash, 8> m_writtenHashes;
    size_t m_oldestHash = 0;
    bool m_hasWrittenHashes = false;
};
