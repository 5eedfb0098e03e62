#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

/// The rows of a data-driven test, from a JSON file beside it: an object of tables, each an array
/// of rows, each an array of columns. For tables that are long, or that another language reads as
/// well. In the "_data" function: ADD_VECTORS("name.json", "table"); in the test itself: VectorRow.
#define ADD_VECTORS(name, table) addVectors(QFINDTESTDATA(name), QStringLiteral(table))

inline void addVectors(const QString &path, const QString &table)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    const QJsonArray rows = document[table].toArray();
    QVERIFY2(!rows.isEmpty(), qPrintable(table));
    QTest::addColumn<QJsonArray>("columns");
    int index = 0;
    for (const auto &row : rows)
        QTest::addRow("%d %.100s", index++, qPrintable(row[0].toString().simplified()))
            << row.toArray();
}

/// The current row.
class VectorRow {
public:
    VectorRow()
    {
        QFETCH(const QJsonArray, columns);
        m_columns = columns;
    }
    QJsonValue at(qsizetype column) const { return m_columns[column]; }
    QString text(qsizetype column) const { return at(column).toString(); }
    /// Bytes that the file has as Latin-1 characters.
    QByteArray bytes(qsizetype column) const { return text(column).toLatin1(); }

private:
    QJsonArray m_columns;
};
