#include "consoleframereader.h"
#include "consolemessagesreceiver.h"
#include "frames.h"
#include "logcapture.h"
#include "queuedcallsdispatcher.h"
#include "readconsolethread.h"

#include <QCoreApplication>
#include <QTest>

#include <sys/resource.h>
#include <unistd.h>

#include <limits>
#include <memory>
#include <tuple>

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

} // namespace

class TestConsoleInput : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textLength()
    {
        // What is read, the length in it (0: none), and what is left.
        const std::tuple<QByteArray, qint64, QByteArray> cases[] = {
            {"\t\r\n\v\f12 x", 12, "x"},
            {"00000000000000000000012 x", 12, "x"},
            {"+12 x", 12, "x"},
            {"12abc34 x", 12, "x"},
            {"12\n3 x", 12, "x"},
            {QByteArray("12\0003 x", 6), 12, "x"},
            {"12", 12, ""},
            {"4294967295 ", 4294967295, ""},
            {"4294967308 ", 12, ""},
            {"4294967296 x", 0, "x"},
            {"99999999999999999999 ", 4294967295, ""},
            {"-5 ", 4294967291, ""},
            {"-99999999999999999999 ", 0, ""},
            {"0 x", 0, "x"},
            {" 12 ", 0, "12 "},
            {"+-1 x", 0, "x"},
            {"0x10 x", 0, "x"},
            {"", 0, ""}};
        for (const auto &[input, length, rest] : cases) {
            const StreamFile file(input);
            ConsoleFrameReader reader(file.stream());
            const auto read = reader.readLength(ConsoleFrameReader::LengthForm::Text);
            QVERIFY2(read.value_or(0) == length, input.constData());
            QCOMPARE(reader.readBody(static_cast<quint32>(rest.size())), rest);
            QVERIFY(!reader.readBody(1));
        }
    }

    void notEnoughMemory()
    {
        if (sanitized)
            QSKIP("sanitizers need the address space themselves");
        const LogCapture log;
        constexpr quint32 maxLength = std::numeric_limits<quint32>::max();
        const StreamFile file;
        const int descriptor = ::fileno(file.stream());
        QCOMPARE(::pwrite(descriptor, "\4\0\0\0next", 8, maxLength), 8);

        rlimit unlimited = {};
        QCOMPARE(::getrlimit(RLIMIT_AS, &unlimited), 0);
        rlimit limited = unlimited;
        limited.rlim_cur = rlim_t{1024} * 1024 * 1024;
        QCOMPARE(::setrlimit(RLIMIT_AS, &limited), 0);
        ConsoleFrameReader reader(file.stream());
        const bool read = reader.readBody(maxLength).has_value();
        QCOMPARE(::setrlimit(RLIMIT_AS, &unlimited), 0);

        QVERIFY(!read);
        QCOMPARE(log.texts(),
                 QStringList(u"[ConsoleFrameReader]: WARNING: a message of 4294967295 bytes is "
                             "dropped: not enough memory"_qs));
        QCOMPARE(reader.readLength(ConsoleFrameReader::LengthForm::Binary), 4u);
        QCOMPARE(reader.readBody(4), QByteArray("next"));
    }

    void startedTwice()
    {
        QByteArray large;
        for (int i = 0; i < 300'000; ++i)
            large += static_cast<char>('a' + i % 23);
        const StreamFile file(frame(large) + frame("a\xff\x62") + frame(QByteArray("a\0b", 3))
                              + frame("cut").chopped(1));
        ConsoleMessagesReceiver receiver(nullptr, file.stream());
        QStringList received;
        int finished = 0;
        connect(&receiver, &ConsoleMessagesReceiver::gotMessage, this,
                [&](const QString &message) { received.append(message); });
        connect(&receiver, &ConsoleMessagesReceiver::finished, this, [&] { ++finished; });
        receiver.start();
        receiver.start();
        QTRY_COMPARE(finished, 1);
        QCoreApplication::processEvents();
        QCOMPARE(finished, 1);
        QCOMPARE(received, QStringList({QString::fromLatin1(large), u"a\ufffdb"_qs, u"a\0b"_qs}));
    }

    void stopWhileMessagesCome()
    {
        // Woken up on its way into the wait it does not wait.
        QueuedCallsDispatcher dispatcher;
        for (int i = 0; i < 2; ++i, dispatcher.wakeUp())
            QVERIFY(dispatcher.processEvents(QEventLoop::WaitForMoreEvents));
        // The thread is ended at any point between taking a message and posting it.
        const QByteArray messages = QByteArray(frame("x")).repeated(2'000);
        for (int round = 0; round < 100; ++round) {
            int ends[2];
            QCOMPARE(::pipe(ends), 0);
            QCOMPARE(::write(ends[1], messages.constData(), 10'000), 10'000);
            std::FILE *const input = ::fdopen(ends[0], "r");
            auto receiver = std::make_unique<ConsoleMessagesReceiver>(nullptr, input);
            int received = 0;
            connect(receiver.get(), &ConsoleMessagesReceiver::gotMessage, this,
                    [&received] { ++received; });
            ReadConsoleThread thread;
            thread.start();
            receiver->moveToThread(&thread);
            receiver->start();
            if (round % 2 == 0)
                QTRY_VERIFY(received > 0);
            thread.stop();
            QVERIFY(thread.isFinished());
            // The event queue of this thread is whole.
            bool delivered = false;
            QMetaObject::invokeMethod(
                this, [&delivered] { delivered = true; }, Qt::QueuedConnection);
            QTRY_VERIFY(delivered);
            receiver.reset();
            ::close(ends[1]);
            std::fclose(input);
        }
    }
};

QTEST_GUILESS_MAIN(TestConsoleInput)
#include "tst_consoleinput.moc"
