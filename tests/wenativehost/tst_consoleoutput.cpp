#include "base64transport.h"
#include "consoleflowcontrol.h"
#include "consolemessagessender.h"
#include "frames.h"
#include "logcapture.h"
#include "percenttransport.h"
#include "terminalanswer.h"

#include <QTest>
#include <QThread>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <memory>
#include <poll.h>
#include <sys/uio.h>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace {

thread_local int writes = 0;
thread_local int flushes = 0;
thread_local int triesWithoutBlocking = 0;
thread_local int polls = 0;
/// How many calls of poll(2) find nothing; signals interrupt every other one.
thread_local int vainPolls = 0;
bool isOldKernel = false;
/// The standard streams that are a terminal, as bits.
unsigned terminals = 0;

} // namespace

// The C library's own, counted for the standard output.
size_t fwrite(const void *data, size_t size, size_t count, FILE *stream)
{
    static const auto next = reinterpret_cast<decltype(&fwrite)>(::dlsym(RTLD_NEXT, "fwrite"));
    writes += stream == stdout;
    return next(data, size, count, stream);
}

int fflush(FILE *stream)
{
    static const auto next = reinterpret_cast<decltype(&fflush)>(::dlsym(RTLD_NEXT, "fflush"));
    flushes += stream == stdout;
    return next(stream);
}

ssize_t pwritev2(int descriptor, const iovec *pieces, int count, off_t offset, int flags)
{
    static const auto next = reinterpret_cast<decltype(&pwritev2)>(::dlsym(RTLD_NEXT, "pwritev2"));
    ++triesWithoutBlocking;
    errno = EOPNOTSUPP;
    return isOldKernel ? -1 : next(descriptor, pieces, count, offset, flags);
}

int poll(pollfd *descriptors, nfds_t count, int timeout)
{
    static const auto next = reinterpret_cast<decltype(&poll)>(::dlsym(RTLD_NEXT, "poll"));
    ++polls;
    if (vainPolls == 0)
        return next(descriptors, count, timeout);
    errno = EINTR;
    return --vainPolls % 2 == 0 ? 0 : -1;
}

int isatty(int descriptor) { return descriptor >= 0 && (terminals >> descriptor & 1U) != 0; }

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

    // Longer than a pipe's buffer, with and without the means to give up a blocked write, and on a
    // kernel that cannot write to pipes without blocking.
    void framesAreWrittenAtOnce()
    {
        for (const auto &[hasFlowControl, isOld] :
             {std::pair(false, false), std::pair(true, false), std::pair(true, true)}) {
            isOldKernel = isOld;
            std::array<int, 2> ends{};
            QCOMPARE(::pipe(ends.data()), 0);
            std::FILE *const output = ::fdopen(ends[1], "w");
            QByteArray got;
            std::thread reader([&got, input = ends[0]] {
                std::array<char, 1000> piece{};
                ssize_t count = 0;
                while ((count = ::read(input, piece.data(), piece.size())) > 0)
                    got.append(piece.data(), count);
            });
            std::FILE *const real = std::exchange(stdout, output);
            auto sender = std::make_unique<ConsoleMessagesSender>();
            if (hasFlowControl)
                sender->setFlowControl(QSharedPointer<ConsoleFlowControl>::create());
            sender->enableFlags(ConsoleMessagesSender::AddCrLf | ConsoleMessagesSender::TextLength,
                                true);
            QByteArray expected;
            int maxWrites = 0;
            int maxFlushes = 0;
            triesWithoutBlocking = 0;
            for (const int size : {0, 1, 4094, 4095, 4096, 4097, 8190, 8192, 65536, 300'000}) {
                QByteArray body(size, 'x');
                for (int i = 0; i < size; i += 7)
                    body[i] = static_cast<char>('a' + i / 7 % 26);
                writes = flushes = 0;
                if (size % 2 == 0)
                    sender->sendMessage(QString::fromLatin1(body));
                else
                    sender->sendUtf8(body.toStdString());
                maxWrites = std::max(maxWrites, writes);
                maxFlushes = std::max(maxFlushes, flushes);
                expected += QByteArray::number(size) + ' ' + body + "\r\n";
            }
            sender->sendUtf8("\xc3\xa4\xff");
            expected += "5 \xc3\xa4\xef\xbf\xbd\r\n";
            sender.reset();
            QCOMPARE(std::exchange(stdout, real), output);
            std::fclose(output);
            reader.join();
            ::close(ends[0]);
            QVERIFY(got == expected);
            QCOMPARE(maxWrites, 3); // the length, the body, the line break
            QCOMPARE(maxFlushes, 1);
            if (isOld)
                QCOMPARE(triesWithoutBlocking, 1);
            isOldKernel = false;
        }
    }

    void readerThatTakesNothing()
    {
        for (const bool isInputEnded : {false, true}) {
            std::array<int, 2> ends{};
            QCOMPARE(::pipe(ends.data()), 0);
            std::FILE *const output = ::fdopen(ends[1], "w");
            const auto flow = QSharedPointer<ConsoleFlowControl>::create();
            if (isInputEnded)
                flow->setInputEnded();
            ConsoleMessagesSender sender(nullptr, output);
            sender.setFlowControl(flow);
            isOldKernel = true;
            polls = 0;
            vainPolls = 20;
            for (const QString &message : {u"a"_qs, u"b"_qs})
                sender.sendMessage(message);
            isOldKernel = false;
            vainPolls = 0;
            std::fclose(output);
            QFile input;
            QVERIFY(input.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
            QCOMPARE(input.readAll(), isInputEnded ? QByteArray() : frame("a") + frame("b"));
            // Four times 100 ms, and as many interruptions; or once for each message more.
            QCOMPARE(polls, isInputEnded ? 8 : 22);
        }
    }

    void streamWithoutDescriptor()
    {
        char *text = nullptr;
        size_t size = 0;
        std::FILE *const output = ::open_memstream(&text, &size);
        ConsoleMessagesSender sender(nullptr, output);
        sender.setFlowControl(QSharedPointer<ConsoleFlowControl>::create());
        sender.sendMessage(u"a"_qs);
        std::fclose(output);
        QCOMPARE(QByteArray(text, qsizetype(size)), frame("a"));
        std::free(text);
    }

    void answersAtATerminal()
    {
        const auto answer = [](unsigned streams, QByteArray argument, int count = 2) {
            terminals = streams;
            char *arguments[] = {nullptr, argument.data(), nullptr};
            QString text = terminalAnswer(count, arguments).value_or(QString());
            terminals = 0;
            return text;
        };
        QVERIFY(answer(1, "--version").startsWith(u"wenativehost "_qs));
        QVERIFY(answer(2, "--help").contains(u"--buggybrowser"_qs));
        QVERIFY(answer(1, "--version") != answer(1, "--help"));
        for (const auto &[streams, argument, count] :
             {std::tuple(0U, "--help", 2), std::tuple(4U, "--version", 2),
              std::tuple(3U, "--version", 1), std::tuple(3U, "--help", 3),
              std::tuple(3U, "chrome-extension://id/", 2)})
            QCOMPARE(answer(streams, argument, count), QString());
    }

    void readerThatTakesLittleIsGivenUpOnceTheInputHasEnded()
    {
        constexpr int bodySize = 500'000;
        std::array<int, 2> ends{};
        QCOMPARE(::pipe(ends.data()), 0);
        std::FILE *const output = ::fdopen(ends[1], "w");
        qint64 got = 0;
        std::thread reader([&got, input = ends[0]] {
            std::array<char, 4096> piece{};
            ssize_t count = 0;
            while ((count = ::read(input, piece.data(), piece.size())) > 0) {
                got += count;
                QThread::msleep(50);
            }
        });
        const auto flow = QSharedPointer<ConsoleFlowControl>::create();
        flow->setInputEnded();
        ConsoleMessagesSender sender(nullptr, output);
        sender.setFlowControl(flow);
        sender.sendMessage(QString(bodySize, u'x'));
        std::fclose(output);
        reader.join();
        ::close(ends[0]);
        QVERIFY2(got < bodySize, "it would have kept the program for six seconds");
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
        // With a buffer the error shows when it is flushed.
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
        // The check of the line break is inverted: its failure is not logged.
        QCOMPARE(texts,
                 QStringList({failed("4 == fwrite (sz, 1, 4, stdout), @,82"), body,
                              failed("s.length () == fwrite (&s.front (), 1, s.length (), stdout), "
                                     "@,63"),
                              body,
                              u"[ConsoleMessagesSender]: WARNING: a message was not written: "
                              "No space left on device"_qs}));
    }

    void messagesOfOtherThreadsAreWrittenByTheSendersOwn()
    {
        std::FILE *const output = std::tmpfile();
        ConsoleMessagesSender sender(nullptr, output);
        std::thread([&sender] {
            sender.sendUtf8("utf8");
            sender.sendMessage(u"text"_qs);
        }).join();
        QCOMPARE(std::ftell(output), 0);
        QCoreApplication::processEvents();
        QCOMPARE(std::ftell(output), 16); // two lengths of four bytes, and the bodies
        std::fclose(output);
    }

    void eachMessageIsTriedOnceTheReaderIsGone()
    {
        std::signal(SIGPIPE, SIG_IGN);
        const LogCapture log;
        int ends[2] = {};
        QCOMPARE(::pipe(ends), 0);
        std::FILE *const output = ::fdopen(ends[1], "w");
        std::setvbuf(output, nullptr, _IONBF, 0);
        ::close(ends[0]);
        ConsoleMessagesSender sender(nullptr, output);
        sender.setFlowControl(QSharedPointer<ConsoleFlowControl>::create());
        const QString large(10'000, u'a'); // a short one fails only when flushed
        for (int message = 0; message < 2; ++message)
            sender.sendMessage(large);
        std::fclose(output);
        QCOMPARE(log.texts()
                     .filter(u"@,85"_qs.replace(u'@',
                                                u"../../src/wenativehost/consolemessagessender"_qs))
                     .size(),
                 2);
    }
};

QTEST_GUILESS_MAIN(TestConsoleOutput)
#include "tst_consoleoutput.moc"
