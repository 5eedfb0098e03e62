#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

/**
 * Writes a QHash<QString, QVariant> byte for byte as QDataStream does (version Qt_5_12).
 *
 * QDataStream passes every number and every length through a device of its own; that takes several
 * times as long as what is written here at once, which is what messages are made of.
 */
class QtVariantStreamWriter {
public:
    static QByteArray writeHash(const QHash<QString, QVariant> &hash);

private:
    void writeVariant(const QVariant &value);
    void writeByQt(const QVariant &value);
    void writeHead(const QVariant &value);
    template <typename Map> void writeMap(const Map &map);
    void writeString(const QString &text);
    void writeBytes(const QByteArray &bytes);
    template <typename Number> void write(Number number);

    QByteArray m_bytes;
};
