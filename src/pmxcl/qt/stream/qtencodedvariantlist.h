#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QVariantList>

/**
 * A list of variants in a message, already encoded in QDataStream's format (version Qt_5_12): for
 * many records this takes a fraction of the memory. A variant that holds one can be converted to a
 * QVariantList, but does not compare equal to it.
 *
 * The bytes are in pieces of about 64 KiB, shared by all copies, so that a sender can release each
 * piece once it is sent.
 */
class QtEncodedVariantList {
public:
    QtEncodedVariantList();

    bool isEmpty() const { return m_count == 0; }
    qsizetype count() const { return m_count; }
    const QList<QByteArray> &pieces() const { return m_pieces; }
    QVariantList decoded() const;

    /// One variant, preceded by its type.
    void append(QByteArrayView encodedVariant);

    bool operator==(const QtEncodedVariantList &) const = default;

private:
    qsizetype m_count = 0;
    QList<QByteArray> m_pieces;
};

Q_DECLARE_METATYPE(QtEncodedVariantList)
