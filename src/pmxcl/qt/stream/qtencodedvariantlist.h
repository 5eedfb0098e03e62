#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QVariantList>

/**
 * Stands in a message for a list of variants that is encoded already, as QDataStream would do it
 * (version Qt_5_12): a list of many records takes a fraction of the memory so. A variant that holds
 * one converts to a QVariantList, and is not equal to it.
 *
 * The bytes are in pieces of some 64 KiB, shared by all copies: whoever sends them can let go of
 * each when it is sent.
 */
class QtEncodedVariantList {
public:
    QtEncodedVariantList();

    bool isEmpty() const { return m_count == 0; }
    qsizetype count() const { return m_count; }
    const QList<QByteArray> &pieces() const { return m_pieces; }
    QVariantList decoded() const;

    /// One variant, with its type before it.
    void append(QByteArrayView encodedVariant);

    bool operator==(const QtEncodedVariantList &) const = default;

private:
    qsizetype m_count = 0;
    QList<QByteArray> m_pieces;
};

Q_DECLARE_METATYPE(QtEncodedVariantList)
