#include "consolemessagesreceiver.h"
#include "frames.h"
#include "readconsolethread.h"

#include <QStringList>
#include <QTest>

#include <unistd.h>

#include <memory>

using Flag = ConsoleMessagesReceiver::Flag;

class TestConsoleMessagesReceiver : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void decoding_data();
    void decoding();
    void flagsAddUp();
    void oneByteAtATime();
    void changeQueuedWhileWaiting();
    void framesAfterAChangeInOneWrite();
    void startedTwice();
    void startedAfterTheEnd();
    void stopWhileWaiting();
    void stopWhileMessagesCome();
    void stopAfterTheEnd();
};

namespace {

/// A receiver in its own thread, over a pipe. Notes in this thread what it says.
class PipedReceiver : public QObject {
public:
    PipedReceiver()
    {
        int ends[2];
        if (::pipe(ends) != 0)
            qFatal("no pipe");
        m_writeEnd = ends[1];
        m_input = ::fdopen(ends[0], "r");
        m_receiver = std::make_unique<ConsoleMessagesReceiver>(nullptr, m_input);
        connect(m_receiver.get(), &ConsoleMessagesReceiver::gotMessage, this,
                [this](const QString &message) { messages.append(message); });
        connect(m_receiver.get(), &ConsoleMessagesReceiver::finished, this,
                [this] { ++timesFinished; });
        thread.start();
        m_receiver->moveToThread(&thread);
    }
    ~PipedReceiver() override
    {
        thread.stop();
        m_receiver.reset();
        closeInput();
        std::fclose(m_input);
    }

    ConsoleMessagesReceiver *operator->() const { return m_receiver.get(); }

    void write(const QByteArray &bytes) const
    {
        QCOMPARE(::write(m_writeEnd, bytes.constData(), static_cast<size_t>(bytes.size())),
                 static_cast<ssize_t>(bytes.size()));
    }
    void closeInput()
    {
        if (m_writeEnd >= 0)
            ::close(m_writeEnd);
        m_writeEnd = -1;
    }

    QStringList messages;
    int timesFinished = 0;
    ReadConsoleThread thread;

private:
    int m_writeEnd = -1;
    std::FILE *m_input = nullptr;
    std::unique_ptr<ConsoleMessagesReceiver> m_receiver;
};

} // namespace

void TestConsoleMessagesReceiver::decoding_data()
{
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("messages");

    const QStringList json(QStringLiteral("{\"a\":1}"));
    const QStringList empty(QString(QLatin1String("")));
    const auto row = [](const char *name, quint32 flags, const QByteArray &input,
                        const QStringList &messages) {
        QTest::newRow(name) << flags << input << messages;
    };
    row("plain", 0, frame("{\"a\":1}"), json);
    row("empty", 0, frame(""), empty);
    row("several", 0, frame("a") + frame("b") + frame("c"),
        {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    row("UTF-8", 0, frame("\xc3\xa9\xf0\x9f\x98\x80"), {QStringLiteral(u"\u00e9\U0001f600")});
    row("not UTF-8", 0, frame("a\xff\x62"), {QStringLiteral(u"a\ufffdb")});
    row("zero byte inside", 0, frame(QByteArray("a\0b", 3)), {QString::fromLatin1("a\0b", 3)});
    row("percent", 1, frame("%7B%22a%22%3A1%7D."), {QStringLiteral("{\"a\":1}.")});
    row("base64", 2, frame("eyJhIjoxfQ=="), json);
    row("base64 with a line break", 2, frame("eyJhIjoxfQ==\r\n"), json);
    row("base64, broken", 2, frame("ey*J") + frame("YQ=="),
        {QString(QLatin1String("")), QStringLiteral("a")});
    row("base64 before percent", 3, frame("JTQxJTQx"), {QStringLiteral("%41%41")});
    row("text length", 4, "7 {\"a\":1}", json);
    row("text length after line breaks", 4, "7 {\"a\":1}\r\n7 {\"a\":1}\r\n", json + json);
    row("text length zero ends", 4, "1 a0 1 b", {QStringLiteral("a")});
    row("text length not a number ends", 4, "1 ax 1 b", {QStringLiteral("a")});
    row("text length counts encoded bytes", 6, "12 eyJhIjoxfQ==", json);
    row("text length and percent", 5, "4 %41.", {QStringLiteral("A.")});
    row("text length and both", 7, "8 JTQxJTQx", {QStringLiteral("%41%41")});
    row("cut in a length", 0, frame("a") + "\2\1", {QStringLiteral("a")});
    row("cut in a body", 0, frame("a") + frame("bcd").chopped(1), {QStringLiteral("a")});
    row("nothing", 0, "", {});
}

void TestConsoleMessagesReceiver::decoding()
{
    QFETCH(const quint32, flags);
    QFETCH(const QByteArray, input);
    QFETCH(const QStringList, messages);

    PipedReceiver receiver;
    receiver->enableFlags(flags, true);
    receiver.write(input);
    receiver.closeInput();
    receiver->start();
    QTRY_COMPARE(receiver.timesFinished, 1);
    QCOMPARE(receiver.messages, messages);
}

void TestConsoleMessagesReceiver::flagsAddUp()
{
    PipedReceiver receiver;
    receiver->enableFlags(Flag::TextLength, true);
    receiver->enableFlags(Flag::PercentEncoded | Flag::Base64Encoded, true);
    receiver->enableFlags(Flag::Base64Encoded, false);
    receiver.write("4 %41.");
    receiver->start();
    QTRY_COMPARE(receiver.messages, QStringList(QStringLiteral("A.")));
}

void TestConsoleMessagesReceiver::oneByteAtATime()
{
    PipedReceiver receiver;
    receiver->start();
    const QByteArray bytes = frame("abc") + frame("") + frame("de");
    for (const char byte : bytes) {
        receiver.write(QByteArray(1, byte));
        QTest::qWait(1);
    }
    QTRY_COMPARE(receiver.messages,
                 QStringList({QStringLiteral("abc"), QString(), QStringLiteral("de")}));
    QCOMPARE(receiver.timesFinished, 0);
}

void TestConsoleMessagesReceiver::changeQueuedWhileWaiting()
{
    // The change comes while the thread is blocked in the read of the length, where it cannot take
    // it: it must hold for the very frame that ends the wait.
    PipedReceiver receiver;
    receiver->start();
    receiver.write(frame("%62."));
    QTRY_COMPARE(receiver.messages.size(), 1);
    receiver->enableFlags(Flag::Base64Encoded, true);
    receiver.write(frame("YQ=="));
    QTRY_COMPARE(receiver.messages.size(), 2);
    receiver->enableFlags(Flag::Base64Encoded, false);
    receiver->enableFlags(Flag::PercentEncoded, true);
    receiver.write(frame("%62."));
    QTRY_COMPARE(receiver.messages,
                 QStringList({QStringLiteral("%62."), QStringLiteral("a"), QStringLiteral("b.")}));
}

void TestConsoleMessagesReceiver::framesAfterAChangeInOneWrite()
{
    PipedReceiver receiver;
    receiver->start();
    receiver->enableFlags(Flag::Base64Encoded, true);
    receiver.write(frame("YQ==") + frame("Yg==") + frame("Yw=="));
    QTRY_COMPARE(receiver.messages,
                 QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
}

void TestConsoleMessagesReceiver::startedTwice()
{
    PipedReceiver receiver;
    receiver->start();
    receiver->start();
    for (int i = 0; i < 100; ++i)
        receiver.write(frame(QByteArray::number(i)));
    receiver.closeInput();
    QTRY_COMPARE(receiver.timesFinished, 1);
    QStringList expected;
    for (int i = 0; i < 100; ++i)
        expected.append(QString::number(i));
    QCOMPARE(receiver.messages, expected);
    // The second chain of calls comes to the end, too.
    receiver.thread.stop();
    QCoreApplication::processEvents();
    QCOMPARE(receiver.timesFinished, 1);
}

void TestConsoleMessagesReceiver::startedAfterTheEnd()
{
    PipedReceiver receiver;
    receiver.closeInput();
    receiver->start();
    QTRY_COMPARE(receiver.timesFinished, 1);
    receiver->start();
    receiver.thread.stop();
    QCoreApplication::processEvents();
    QCOMPARE(receiver.timesFinished, 1);
}

void TestConsoleMessagesReceiver::stopWhileWaiting()
{
    PipedReceiver receiver;
    receiver->start();
    receiver.write(frame("a"));
    QTRY_COMPARE(receiver.messages.size(), 1);
    receiver.thread.stop();
    QVERIFY(receiver.thread.isFinished());
}

void TestConsoleMessagesReceiver::stopWhileMessagesCome()
{
    // The thread is ended at any point between taking a message and posting it.
    const QByteArray messages = QByteArray(frame("x")).repeated(2'000);
    for (int round = 0; round < 100; ++round) {
        PipedReceiver receiver;
        receiver.write(messages);
        receiver->start();
        if (round % 2 == 0)
            QTRY_VERIFY(!receiver.messages.isEmpty());
        receiver.thread.stop();
        // The event queue of this thread is whole.
        bool delivered = false;
        QMetaObject::invokeMethod(
            this, [&delivered] { delivered = true; }, Qt::QueuedConnection);
        QTRY_VERIFY(delivered);
    }
}

void TestConsoleMessagesReceiver::stopAfterTheEnd()
{
    PipedReceiver receiver;
    receiver->start();
    receiver.closeInput();
    QTRY_COMPARE(receiver.timesFinished, 1);
    receiver.thread.stop();
    QVERIFY(receiver.thread.isFinished());
}

QTEST_GUILESS_MAIN(TestConsoleMessagesReceiver)
#include "tst_consolemessagesreceiver.moc"
