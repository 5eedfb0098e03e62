#include "assertionlog.h"
#include "logcapture.h"

#include <QTest>

class TestAssertionLog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void failedCheck_data();
    void failedCheck();
    void holdingCheckIsSilent();
    void loggerOfNow();
};

void TestAssertionLog::failedCheck_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("mark");
    QTest::newRow("source") << QByteArray("/home/me/src/kovalo/src/common/remote/part.cpp")
                            << QStringLiteral("../../src/common/remote/part");
    QTest::newRow("relative") << QByteArray("../main/src/logger/x.cpp")
                              << QStringLiteral("../../src/logger/x");
    QTest::newRow("header") << QByteArray("/a.b/src/db/table.h")
                            << QStringLiteral("../../src/db/table");
    QTest::newRow("elsewhere") << QByteArray("/a.b/tests/noext")
                               << QStringLiteral("/a.b/tests/noext");
}

void TestAssertionLog::failedCheck()
{
    QFETCH(const QByteArray, file);
    QFETCH(const QString, mark);
    const LogCapture log;
    QVERIFY(!checkOrLog(false, "write(%3, \"é\")", file.constData(), 7));
    QCOMPARE(log.texts(),
             QStringList{QStringLiteral("ASSERTION FAILED: write(%3, \"é\"), ") + mark
                         + QStringLiteral(",7")});
}

void TestAssertionLog::holdingCheckIsSilent()
{
    const LogCapture log;
    QVERIFY(checkOrLog(true, "fine"));
    QCOMPARE(log.texts(), QStringList());
}

void TestAssertionLog::loggerOfNow()
{
    QVERIFY(!QtAppDefaultLogger::instance());
    logLine(1, QStringLiteral("nobody listens"));
    const LogCapture log(2);
    QCOMPARE(QtAppDefaultLogger::instance()->verbosityLevel(), 2);
    logLine(2, QStringLiteral("heard"));
    logLine(3, QStringLiteral("too quiet"));
    QCOMPARE(log.texts(), QStringList{QStringLiteral("heard")});
}

QTEST_GUILESS_MAIN(TestAssertionLog)
#include "tst_assertionlog.moc"
