#include "consoleflowcontrol.h"
#include "consoleframereader.h"
#include "consolemessagesreceiver.h"
#include "frames.h"
#include "logcapture.h"
#include "processmemory.h"
#include "queuedcallsdispatcher.h"
#include "readconsolethread.h"

#include <QCoreApplication>
#include <QTest>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <tuple>

class TestConsoleInput : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textLength()
    {
        // The input, the length in it (0: none), and the rest.
        const std::tuple<QByteArray, qint64, QByteArray> cases[] = {
            {"\t\r\n\v\f12 x", 12, "x"},
            {"+12 x", 12, "x"},
            {"10 x", 10, "x"},
            {"1-2 x", 1, "x"},
            {"-4294967295 x", 1, "x"},
            {"9223372036854775806 ", 4294967294, ""},
            {QByteArray("12\0003 x", 6), 12, "x"},
            {"4294967295 ", 4294967295, ""},
            {"4294967296 x", 0, "x"},
            {"99999999999999999999 ", 4294967295, ""},
            {"-99999999999999999999 ", 0, ""},
            {"0 x", 0, "x"},
            {" 12 ", 0, "12 "},
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

    /// The body is passed over; the message after it is read.
    void bodyLargerThanTheMemory()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("a sanitizer needs more than any limit");
#endif
        constexpr quint32 large = 300'000'000;
        const LogCapture log;
        const StreamFile file;
        const QByteArray next = frame("x");
        QCOMPARE(::pwrite(::fileno(file.stream()), next.constData(), 5, large), 5);
        ConsoleFrameReader reader(file.stream());
        rlimit usual{};
        ::getrlimit(RLIMIT_AS, &usual);
        const rlimit little{static_cast<rlim_t>(reservedMemory()) + (50 << 20), usual.rlim_max};
        ::setrlimit(RLIMIT_AS, &little);
        const auto body = reader.readBody(large);
        ::setrlimit(RLIMIT_AS, &usual);
        QCOMPARE(body, QByteArray());
        QCOMPARE(log.texts().filter(u"not enough memory"_qs).size(), 1);
        QCOMPARE(reader.readLength(ConsoleFrameReader::LengthForm::Binary).value_or(0), 1U);
        QCOMPARE(reader.readBody(1), QByteArray("x"));
        std::rewind(file.stream());
        ::setrlimit(RLIMIT_AS, &little);
        const auto cutOff = reader.readBody(large + 6);
        ::setrlimit(RLIMIT_AS, &usual);
        QVERIFY(!cutOff);
    }

    void threadWithoutAReader()
    {
        ReadConsoleThread thread;
        thread.start();
        thread.stop();
        QVERIFY(thread.isFinished());
    }

    /// The thread's dispatcher has queued calls only, and says so.
    void dispatcherOfTheThread()
    {
        const LogCapture log;
        QueuedCallsDispatcher dispatcher;
        dispatcher.processEvents(QEventLoop::AllEvents); // its creation wakes it, too
        QVERIFY(!dispatcher.processEvents(QEventLoop::AllEvents));
        dispatcher.wakeUp();
        QVERIFY(dispatcher.processEvents(QEventLoop::WaitForMoreEvents));
        dispatcher.registerTimer(1, 1, Qt::CoarseTimer, this);
        dispatcher.registerSocketNotifier(nullptr);
        QVERIFY(!dispatcher.unregisterTimer(1) && !dispatcher.unregisterTimers(this));
        QCOMPARE(log.texts().size(), 2);
    }

    void readerWaitsForWhoHandles_data()
    {
        QTest::addColumn<bool>("hasDescriptors");
        QTest::newRow("told of room") << true;
        QTest::newRow("no descriptor to be had") << false;
    }

    void readerWaitsForWhoHandles()
    {
        QFETCH(const bool, hasDescriptors);
        constexpr int count = 100;
        const QByteArray messages = frame(QByteArray(200'000, 'x')).repeated(count);
        const StreamFile file(messages);
        rlimit usual{};
        ::getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit none{0, usual.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, hasDescriptors ? &usual : &none);
        const auto flow = QSharedPointer<ConsoleFlowControl>::create();
        ::setrlimit(RLIMIT_NOFILE, &usual);
        ConsoleMessagesReceiver receiver(nullptr, file.stream());
        receiver.setFlowControl(flow);
        std::atomic<int> read = 0;
        int received = 0;
        int most = 0;
        bool endedEarly = false;
        connect(
            &receiver, &ConsoleMessagesReceiver::gotMessage, &receiver, [&read] { ++read; },
            Qt::DirectConnection);
        connect(&receiver, &ConsoleMessagesReceiver::gotMessage, this, [&] {
            QThread::msleep(1);
            endedEarly |= flow->isInputEnded() && read < count;
            most = std::max(most, read - received++);
        });
        ReadConsoleThread thread;
        connect(&receiver, &ConsoleMessagesReceiver::finished, &thread,
                &ReadConsoleThread::endByItself, Qt::DirectConnection);
        thread.start();
        receiver.moveToThread(&thread);
        receiver.start();
        receiver.start(); // a second call is harmless
        QTRY_COMPARE_WITH_TIMEOUT(received, count, 30'000);
        QTRY_VERIFY_WITH_TIMEOUT(flow->isInputEnded(), 30'000);
        const qint64 limit = ConsoleFlowControl::maxUnhandledBytes;
        QVERIFY(!endedEarly);
        QVERIFY2(most <= limit / 400'000 + 2, "two bytes a character, and one message more");
        QTRY_VERIFY_WITH_TIMEOUT(thread.isFinished(), 30'000);
    }

    void stopWhileMessagesCome()
    {
        // The thread is stopped at any point between reading a message and posting it.
        const QByteArray messages = QByteArray(frame("x")).repeated(2'000);
        for (int round = 0; round < 100; ++round) {
            int ends[2];
            QCOMPARE(::pipe(ends), 0);
            QCOMPARE(::write(ends[1], messages.constData(), 10'000), 10'000);
            std::FILE *const input = ::fdopen(ends[0], "r");
            ConsoleMessagesReceiver receiver(nullptr, input);
            int received = 0;
            connect(&receiver, &ConsoleMessagesReceiver::gotMessage, this,
                    [&received] { ++received; });
            ReadConsoleThread thread;
            thread.start();
            receiver.moveToThread(&thread);
            receiver.start();
            if (round % 2 == 0)
                QTRY_VERIFY(received > 0);
            thread.stop();
            // The event queue of this thread still works.
            bool delivered = false;
            QMetaObject::invokeMethod(
                this, [&delivered] { delivered = true; }, Qt::QueuedConnection);
            QTRY_VERIFY(delivered);
            ::close(ends[1]);
            std::fclose(input);
        }
    }
};

QTEST_GUILESS_MAIN(TestConsoleInput)
#include "tst_consoleinput.moc"
