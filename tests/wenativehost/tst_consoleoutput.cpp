#include "base64transport.h"
#include "consolemessagessender.h"
#include "frames.h"
#include "logcapture.h"
#include "percenttransport.h"

#include <QTest>

class TestConsoleOutput : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void base64()
    {
        const std::pair<const char *, const char *> cases[] = {
            {"YQ==", "a"},     {"YWI=", "ab"}, {"+/+/", "\xfb\xff\xbf"}, {"YWJj YWJj", "abc"},
            {"YQ==YWJj", "a"}, {"YR==", "a"},  {"YWJj====", "abc"},      {"YWJj\r\n", "abc"}};
        for (const auto &[text, bytes] : cases)
            QVERIFY2(Base64Transport::decode(text) == bytes, text);
        QCOMPARE(Base64Transport::decode(QByteArray("YWJj\0YWJj", 9)), QByteArray("abc"));
        QCOMPARE(Base64Transport::decode(QByteArray("YWJjYW\0j", 8)), QByteArray());
        for (const char *broken : {"", "e*Jh", "YWJjeyJ*", "Y===", "YQ=x", "YWJjY", "YWJjYQ",
                                   "YWJjYWI", "YWJjYQ=", "YW-_", "YW\xc3\xa9"})
            QVERIFY2(Base64Transport::decode(broken).isEmpty(), broken);
    }

    void percent()
    {
        const std::pair<const char *, const char *> cases[] = {{"%7B%c3%A9%7d.", "{\xc3\xa9}."},
                                                               {"a%41", "aA"},
                                                               {"%41%4", "A%4"},
                                                               {"%zz%41", "%zzA"},
                                                               {"%4g%41", "%4gA"},
                                                               {"%%41", "%A"},
                                                               {"%2541", "%41"}};
        for (const auto &[text, bytes] : cases)
            QVERIFY2(PercentTransport::decode(text) == bytes, text);
        for (const char *kept : {"a+b", "abc%", "%G1%1G%@1"})
            QCOMPARE(PercentTransport::decode(kept), QByteArray(kept));
        QCOMPARE(PercentTransport::encode("azAZ09/:@[`{-_.~% \xc3"),
                 QByteArray("azAZ09%2F%3A%40%5B%60%7B%2D%5F%2E%7E%25%20%C3"));
    }

    void outputCannotBeWritten()
    {
        const LogCapture log;
        std::FILE *const full = std::fopen("/dev/full", "w");
        std::setvbuf(full, nullptr, _IONBF, 0);
        ConsoleMessagesSender sender(nullptr, full);
        sender.sendMessage(u"a"_qs);
        sender.enableFlags(1 | 2, true);
        sender.sendMessage(u"a"_qs);
        std::fclose(full);
        // With a buffer the fault shows when it is flushed.
        std::FILE *const buffered = std::fopen("/dev/full", "w");
        ConsoleMessagesSender failing(nullptr, buffered);
        for (int message = 0; message < 3; ++message)
            failing.sendMessage(u"a"_qs); // logged once
        const QStringList texts = log.texts();
        std::fclose(buffered);

        const auto failed = [](const char *expression) {
            return u"ASSERTION FAILED: %1"_qs.arg(QLatin1String(expression))
                .replace(u'@', u"../../src/wenativehost/consolemessagessender"_qs);
        };
        const QString body = failed("size == fwrite (&content.front (), 1, size, stdout), @,85");
        // The check of the line break is the wrong way round: nothing is said of it.
        QCOMPARE(texts,
                 QStringList({failed("4 == fwrite (sz, 1, 4, stdout), @,82"), body,
                              failed("s.length () == fwrite (&s.front (), 1, s.length (), stdout), "
                                     "@,63"),
                              body,
                              u"[ConsoleMessagesSender]: WARNING: a message was not written: "
                              "No space left on device"_qs}));
    }
};

QTEST_GUILESS_MAIN(TestConsoleOutput)
#include "tst_consoleoutput.moc"
