#include "consolemessagessender.h"
#include "frames.h"
#include "logcapture.h"
#include "outputfile.h"

#include <QTest>
#include <QThread>

#include <memory>

class TestConsoleMessagesSender : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void encoding_data();
    void encoding();
    void flagsAddUp();
    void messagesFollowEachOther();
    void largeMessage();
    void flushedAtOnce();
    void otherThread();
    void lineBreakIsLogged();
    void outputCannotBeWritten_data();
    void outputCannotBeWritten();
};

namespace {

QString sourceMark() { return QStringLiteral("../../src/wenativehost/consolemessagessender"); }

QString failedCheck(const char *expression, int line)
{
    return QStringLiteral("ASSERTION FAILED: %1, %2,%3")
        .arg(QString::fromLatin1(expression), sourceMark(), QString::number(line));
}

} // namespace

void TestConsoleMessagesSender::encoding_data()
{
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<QByteArray>("bytes");

    // The message is a b/é.
    const QByteArray plain("\6\0\0\0a b/\xc3\xa9", 10);
    const QByteArray percent("\x0e\0\0\0a%20b%2F%C3%A9", 18);
    const QByteArray base64("\10\0\0\0YSBiL8Op", 12);
    QTest::newRow("0") << 0u << plain;
    QTest::newRow("1") << 1u << plain + "\r\n";
    QTest::newRow("2") << 2u << QByteArray("6 a b/\xc3\xa9");
    QTest::newRow("3") << 3u << QByteArray("6 a b/\xc3\xa9\r\n");
    QTest::newRow("4") << 4u << percent;
    QTest::newRow("5") << 5u << percent + "\r\n";
    QTest::newRow("6") << 6u << QByteArray("14 a%20b%2F%C3%A9");
    QTest::newRow("7") << 7u << QByteArray("14 a%20b%2F%C3%A9\r\n");
    QTest::newRow("8") << 8u << base64;
    QTest::newRow("9") << 9u << base64 + "\r\n";
    QTest::newRow("10") << 10u << QByteArray("8 YSBiL8Op");
    QTest::newRow("11") << 11u << QByteArray("8 YSBiL8Op\r\n");
    QTest::newRow("12") << 12u << base64;
    QTest::newRow("13") << 13u << base64 + "\r\n";
    QTest::newRow("14") << 14u << QByteArray("8 YSBiL8Op");
    QTest::newRow("15") << 15u << QByteArray("8 YSBiL8Op\r\n");
}

void TestConsoleMessagesSender::encoding()
{
    QFETCH(const quint32, flags);
    QFETCH(const QByteArray, bytes);

    const OutputFile output;
    ConsoleMessagesSender sender(nullptr, output.file());
    sender.enableFlags(flags, true);
    sender.sendMessage(QStringLiteral(u"a b/\u00e9"));
    QCOMPARE(output.written(), bytes);
}

void TestConsoleMessagesSender::flagsAddUp()
{
    const OutputFile output;
    ConsoleMessagesSender sender(nullptr, output.file());
    sender.enableFlags(1 | 8, true);
    sender.enableFlags(2 | 4, true);
    sender.enableFlags(1 | 8, false);
    sender.sendMessage(QStringLiteral("."));
    QCOMPARE(output.written(), QByteArray("3 %2E"));
}

void TestConsoleMessagesSender::messagesFollowEachOther()
{
    const OutputFile output;
    ConsoleMessagesSender sender(nullptr, output.file());
    sender.sendMessage(QStringLiteral("a"));
    sender.sendMessage(QString());
    sender.sendMessage(QStringLiteral("b"));
    QCOMPARE(output.written(), QByteArray("\1\0\0\0a\0\0\0\0\1\0\0\0b", 14));
}

void TestConsoleMessagesSender::largeMessage()
{
    const OutputFile output;
    ConsoleMessagesSender sender(nullptr, output.file());
    sender.sendMessage(QString(300'000, u'x'));
    QVERIFY(output.written() == frame(QByteArray(300'000, 'x')));
}

void TestConsoleMessagesSender::flushedAtOnce()
{
    const OutputFile output;
    ConsoleMessagesSender sender(nullptr, output.file());
    sender.sendMessage(QStringLiteral("a"));
    QCOMPARE(output.written(), frame("a"));
}

void TestConsoleMessagesSender::otherThread()
{
    const OutputFile output;
    ConsoleMessagesSender sender(nullptr, output.file());
    const std::unique_ptr<QThread> thread(QThread::create([&sender] {
        sender.enableFlags(ConsoleMessagesSender::TextLength, true);
        sender.sendMessage(QStringLiteral("from afar"));
    }));
    thread->start();
    QVERIFY(thread->wait());
    QCOMPARE(output.written(), QByteArray());
    QCoreApplication::processEvents();
    QCOMPARE(output.written(), QByteArray("9 from afar"));
}

void TestConsoleMessagesSender::lineBreakIsLogged()
{
    const LogCapture log;
    const OutputFile output;
    ConsoleMessagesSender sender(nullptr, output.file());
    sender.enableFlags(1 | 2, true);
    sender.sendMessage(QStringLiteral("{\"a\":1}"));
    QCOMPARE(output.written(), QByteArray("7 {\"a\":1}\r\n"));
    QCOMPARE(log.texts(), QStringList(failedCheck("2 != fwrite (\"\\r\\n\", 1, 2, stdout)", 88)));
}

void TestConsoleMessagesSender::outputCannotBeWritten_data()
{
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<QStringList>("texts");

    const QString body = failedCheck("size == fwrite (&content.front (), 1, size, stdout)", 85);
    QTest::newRow("binary length")
        << 0u << QStringList({failedCheck("4 == fwrite (sz, 1, 4, stdout)", 82), body});
    QTest::newRow("text length")
        << 2u
        << QStringList(
               {failedCheck("s.length () == fwrite (&s.front (), 1, s.length (), stdout)", 63),
                body});
    // The check of the line break is the wrong way round: nothing is said of it.
    QTest::newRow("line break") << 1u
                                << QStringList(
                                       {failedCheck("4 == fwrite (sz, 1, 4, stdout)", 82), body});
}

void TestConsoleMessagesSender::outputCannotBeWritten()
{
    QFETCH(const quint32, flags);
    QFETCH(const QStringList, texts);

    const LogCapture log;
    std::FILE *full = std::fopen("/dev/full", "w");
    QVERIFY(full);
    std::setvbuf(full, nullptr, _IONBF, 0);
    ConsoleMessagesSender sender(nullptr, full);
    sender.enableFlags(flags, true);
    sender.sendMessage(QStringLiteral("a"));
    QCOMPARE(log.texts(), texts);

    // With a buffer the fault shows when it is flushed.
    std::FILE *buffered = std::fopen("/dev/full", "w");
    QVERIFY(buffered);
    ConsoleMessagesSender(nullptr, buffered).sendMessage(QStringLiteral("a"));
    const QStringList afterFlush = log.texts();
    QCOMPARE(afterFlush.last(),
             QStringLiteral("[ConsoleMessagesSender]: WARNING: a message was not written: "
                            "No space left on device"));
    std::fclose(full);
    std::fclose(buffered);
}

QTEST_GUILESS_MAIN(TestConsoleMessagesSender)
#include "tst_consolemessagessender.moc"
