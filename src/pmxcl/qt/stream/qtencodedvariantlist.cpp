#include "qtencodedvariantlist.h"

#include "qtvariantstreamformat.h"

#include <QDataStream>
#include <QIODevice>

namespace {

constexpr qsizetype pieceSize = qsizetype{64} * 1024;

} // namespace

QtEncodedVariantList::QtEncodedVariantList()
{
    [[maybe_unused]] static const bool registered =
        QMetaType::registerConverter<QtEncodedVariantList, QVariantList>(
            &QtEncodedVariantList::decoded);
}

QVariantList QtEncodedVariantList::decoded() const
{
    QByteArray bytes;
    QDataStream(&bytes, QIODevice::WriteOnly) << static_cast<quint32>(m_count);
    for (const QByteArray &piece : m_pieces)
        bytes += piece;
    QDataStream stream(bytes);
    stream.setVersion(QtVariantStreamFormat::version);
    QVariantList list;
    stream >> list;
    return list;
}

void QtEncodedVariantList::append(QByteArrayView encodedVariant)
{
    if (m_pieces.isEmpty() || m_pieces.constLast().size() + encodedVariant.size() > pieceSize) {
        m_pieces.emplaceBack();
        // A short list does not need it all.
        if (m_pieces.size() > 1)
            m_pieces.last().reserve(pieceSize);
    }
    m_pieces.last() += encodedVariant;
    ++m_count;
}
