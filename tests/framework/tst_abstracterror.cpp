#include "abstracterror.h"

#include <QTest>
#include <QVariantHash>
#include <QVariantMap>

class TestAbstractError : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textForm_data();
    void textForm();
    void containers();
    void containerOfUnexpectedTypes();
    void noError();
};

void TestAbstractError::textForm_data()
{
    QTest::addColumn<AbstractError>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("all fields")
        << AbstractError(5, "Cat", "Src", "Desc")
        << QStringLiteral("{ERROR: |CODE|: 5, |CATEGORY|: Cat, |SOURCE|: Src, |DESCRIPTION|: "
                          "Desc}");
    QTest::newRow("no error") << AbstractError()
                              << QStringLiteral("{ERROR: |CODE|: 0, |CATEGORY|: , |SOURCE|: , "
                                                "|DESCRIPTION|: }");
    QTest::newRow("generic, UTF-8, place marker, zero byte")
        << genericError(GenericErrorCode::ProtocolMismatch, "přes %1 %4",
                        std::string("kept\0lost", 9))
        << QStringLiteral("{ERROR: |CODE|: 2, |CATEGORY|: GenericError, |SOURCE|: přes %1 %4, "
                          "|DESCRIPTION|: kept}");
    QTest::newRow("negative code") << AbstractError(-1, "a", "b", "c")
                                   << QStringLiteral("{ERROR: |CODE|: -1, |CATEGORY|: a, |SOURCE|: "
                                                     "b, |DESCRIPTION|: c}");
}

void TestAbstractError::textForm()
{
    QFETCH(const AbstractError, error);
    QString text;
    QTextStream stream(&text);
    stream << Qt::hex << error;
    QTEST(text, "text");
}

void TestAbstractError::containers()
{
    const AbstractError error(7, "kategorie č", "source", "description");
    const QVariantHash hash{
        {QStringLiteral("code"), 7},
        {QStringLiteral("category"), QStringLiteral("kategorie č")},
        {QStringLiteral("source"), QStringLiteral("source")},
        {QStringLiteral("description"), QStringLiteral("description")},
    };
    QCOMPARE(toContainer<QVariantHash>(error), hash);
    QCOMPARE(toContainer<QVariantHash>(error).value(QStringLiteral("code")).typeId(),
             int{QMetaType::Int});
    QVERIFY(abstractErrorFromContainer<QVariantHash>(hash) == error);
    QVERIFY(abstractErrorFromContainer<QVariantMap>(toContainer<QVariantMap>(error)) == error);
}

void TestAbstractError::containerOfUnexpectedTypes()
{
    QVERIFY(abstractErrorFromContainer<QVariantHash>({}) == AbstractError());
    const QVariantHash hash{{QStringLiteral("code"), QStringLiteral("12")},
                            {QStringLiteral("category"), QVariantList{1}},
                            {QStringLiteral("source"), 3}};
    QVERIFY(abstractErrorFromContainer<QVariantHash>(hash) == AbstractError(12, "", "3", ""));
}

void TestAbstractError::noError()
{
    QVERIFY(!AbstractError().isError());
    QVERIFY(!genericError(GenericErrorCode::NoError, "a", "b").isError());
    QVERIFY(genericError(GenericErrorCode::Failure, "a", "b").isError());
}

QTEST_GUILESS_MAIN(TestAbstractError)
#include "tst_abstracterror.moc"
