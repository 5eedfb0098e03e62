#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>
#include <QVariantHash>

#include <array>

/**
 * Writes a QHash<QString, QVariant> byte for byte as QDataStream does (version Qt_5_12).
 *
 * QDataStream passes every number and every length through a device, and its bytes grow by doubling
 * however long the message gets. What messages are made of is written here at once, at a cost per
 * item that does not grow with the message.
 */
class QtVariantStreamWriter {
public:
    static QByteArray writeHash(const QHash<QString, QVariant> &hash);

private:
    void writeVariant(const QVariant &value);
    void writeDateTime(const QVariant &value);
    void writeByQt(const QVariant &value);
    void writeHead(const QVariant &value);
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

    QByteArray m_bytes;
    /// The records of a long list share the hashes of what says nothing; these were written lately.
    std::array<WrittenHash, 8> m_writtenHashes;
    size_t m_oldestHash = 0;
};
