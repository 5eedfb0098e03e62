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
 * Writes variants byte for byte as QDataStream does (version Qt_5_12).
 *
 * QDataStream passes every number and every length through a device, and its bytes grow by doubling
 * however long the message gets. What messages are made of is written here at once, at a cost per
 * item that does not grow with the message. A QtEncodedVariantList is written as the list that it
 * stands for.
 */
class QtVariantStreamWriter {
public:
    static QByteArray writeHash(const QHash<QString, QVariant> &hash);
    /// The same in pieces, which share the bytes of what was encoded before.
    static QList<QByteArray> writeHashInPieces(const QHash<QString, QVariant> &hash);

    void writeVariant(const QVariant &value);
    /// The parts of a variant that is a hash: the head, how many entries there are, and of each the
    /// key, followed by a variant.
    void writeHashHead();
    /// The head of a variant that is a list; the count and the variants follow.
    void writeListHead();
    void writeCount(quint32 count);
    void writeKey(const QString &key) { writeString(key); }
    void append(QByteArrayView bytes) { m_bytes += bytes; }

    const QByteArray &bytes() const { return m_bytes; }
    /// Gives what was written for other bytes, to which clear() must be the next thing that is
    /// done.
    void swap(QByteArray &bytes) { m_bytes.swap(bytes); }
    /// Begins anew, in the same memory.
    void clear();

private:
    void writeDateTime(const QVariant &value);
    void writeByQt(const QVariant &value);
    void writeHead(const QVariant &value);
    void writeHead(int typeId, bool isNull);
    void writeEncoded(const QtEncodedVariantList &list);
    /// A variant that is a number, whose bytes are given.
    template <typename Number> void writeNumber(const QVariant &value, Number number);
    void writeList(const QVariantList &list);
    void reserveForItems(qsizetype sampleSize, qsizetype moreItems);
    template <typename Map> void writeMap(const Map &map);
    void writeNestedHash(const QVariantHash &hash);
    void writeString(const QString &text);
    void writeBytes(const QByteArray &bytes);
    template <typename Number> void write(Number number);
    /// Makes room for so many bytes at the end, to be written before anything else is.
    char *append(qsizetype size);

    /// A hash that others may be shared with, and where it was written.
    struct WrittenHash {
        QVariantHash hash;
        qsizetype begin = 0;
        qsizetype size = 0;
    };

    /// What is finished, and what comes after it.
    QList<QByteArray> m_pieces;
    QByteArray m_bytes;
    /// The records of a long list share the hashes of what says nothing; these were written lately.
    std::array<WrittenHash, 8> m_writtenHashes;
    size_t m_oldestHash = 0;
    bool m_hasWrittenHashes = false;
};
