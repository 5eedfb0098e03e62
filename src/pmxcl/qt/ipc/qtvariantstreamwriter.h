#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>
#include <QVariantHash>

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
    void writeRaw(const QByteArray &bytes);
    /// Makes room for so many bytes at the end, to be written before anything else is.
    char *append(qsizetype size)
    {
        if (m_end - m_at < size)
            reserve(written() + size);
        char *const room = m_at;
        m_at += size;
        return room;
    }
    qsizetype written() const { return m_at ? m_at - m_bytes.constData() : 0; }
    void reserve(qsizetype size);

    /// Longer than what was written, which ends at m_at.
    QByteArray m_bytes;
    char *m_at = nullptr;
    char *m_end = nullptr;
};
