#pragma once

#include <QByteArray>
#include <QtEndian>

/// A body with its length prefix, as written by a browser.
inline QByteArray framed(const QByteArray &body)
{
    const auto length = qToLittleEndian(static_cast<quint32>(body.size()));
    return QByteArray(reinterpret_cast<const char *>(&length), sizeof length) + body;
}
