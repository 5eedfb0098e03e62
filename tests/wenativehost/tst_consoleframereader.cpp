#include "consoleframereader.h"
#include "frames.h"
#include "logcapture.h"

#include <QTest>

#include <sys/resource.h>

#include <algorithm>
#include <limits>
#include <memory>

using LengthForm = ConsoleFrameReader::LengthForm;

class TestConsoleFrameReader : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textLength_data();
    void textLength();
    void textLengthWithoutEnd();
    void framesFollowEachOther();
    void cutAnywhere_data();
    void cutAnywhere();
    void bodyLargerThanFirstPiece();
    void announcedButNotSent();
    void notEnoughMemory();
};

namespace {

/// A stream of so many letters "a", with what follows them, that are nowhere in memory.
class EndlessStream {
public:
    EndlessStream(qint64 letters, const QByteArray &end) : m_letters(letters), m_end(end)
    {
        cookie_io_functions_t functions = {};
        functions.read = &EndlessStream::read;
        m_file = ::fopencookie(this, "r", functions);
    }
    ~EndlessStream() { std::fclose(m_file); }
    Q_DISABLE_COPY_MOVE(EndlessStream)

    std::FILE *file() const { return m_file; }

private:
    static ssize_t read(void *cookie, char *buffer, size_t size)
    {
        auto *self = static_cast<EndlessStream *>(cookie);
        const auto wanted = static_cast<qint64>(size);
        if (self->m_letters > 0) {
            const qint64 count = std::min(wanted, self->m_letters);
            std::fill_n(buffer, count, 'a');
            self->m_letters -= count;
            return count;
        }
        const qint64 count = std::min<qint64>(wanted, self->m_end.size());
        std::copy_n(self->m_end.cbegin(), count, buffer);
        self->m_end.remove(0, count);
        return count;
    }

    qint64 m_letters;
    QByteArray m_end;
    std::FILE *m_file = nullptr;
};

constexpr quint32 maxLength = std::numeric_limits<quint32>::max();

/// The greatest resident memory that this process has had, in bytes.
qint64 peakMemory()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * qint64{1024};
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

} // namespace

void TestConsoleFrameReader::textLength_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<qint64>("length"); // 0: none
    QTest::addColumn<QByteArray>("rest");

    QTest::newRow("digits") << QByteArray("12 x") << qint64{12} << QByteArray("x");
    QTest::newRow("after a line break") << QByteArray("\r\n12 x") << qint64{12} << QByteArray("x");
    QTest::newRow("all blanks but the space")
        << QByteArray("\t\n\v\f\r12 x") << qint64{12} << QByteArray("x");
    QTest::newRow("leading zeros")
        << QByteArray("00000000000000000000012 x") << qint64{12} << QByteArray("x");
    QTest::newRow("plus sign") << QByteArray("+12 x") << qint64{12} << QByteArray("x");
    QTest::newRow("digits, then more") << QByteArray("12abc34 x") << qint64{12} << QByteArray("x");
    QTest::newRow("line break behind") << QByteArray("12\n3 x") << qint64{12} << QByteArray("x");
    QTest::newRow("zero byte behind")
        << QByteArray("12\0003 x", 6) << qint64{12} << QByteArray("x");
    QTest::newRow("ended by the input's end") << QByteArray("12") << qint64{12} << QByteArray();
    QTest::newRow("largest") << QByteArray("4294967295 ") << qint64{4294967295} << QByteArray();
    QTest::newRow("cut to 32 bits") << QByteArray("4294967308 ") << qint64{12} << QByteArray();
    QTest::newRow("cut to zero") << QByteArray("4294967296 x") << qint64{0} << QByteArray("x");
    QTest::newRow("beyond 64 bits")
        << QByteArray("99999999999999999999 ") << qint64{4294967295} << QByteArray();
    QTest::newRow("largest of 64 bits")
        << QByteArray("9223372036854775807 ") << qint64{4294967295} << QByteArray();
    QTest::newRow("negative") << QByteArray("-5 ") << qint64{4294967291} << QByteArray();
    QTest::newRow("smallest of 64 bits")
        << QByteArray("-9223372036854775808 ") << qint64{0} << QByteArray();
    QTest::newRow("below 64 bits")
        << QByteArray("-99999999999999999999 ") << qint64{0} << QByteArray();
    QTest::newRow("zero") << QByteArray("0 x") << qint64{0} << QByteArray("x");
    QTest::newRow("space at once") << QByteArray(" 12 ") << qint64{0} << QByteArray("12 ");
    QTest::newRow("no number") << QByteArray("abc x") << qint64{0} << QByteArray("x");
    QTest::newRow("two signs") << QByteArray("+-1 x") << qint64{0} << QByteArray("x");
    QTest::newRow("blank after the sign") << QByteArray("-\n1 x") << qint64{0} << QByteArray("x");
    QTest::newRow("hexadecimal") << QByteArray("0x10 x") << qint64{0} << QByteArray("x");
    QTest::newRow("nothing") << QByteArray() << qint64{0} << QByteArray();
}

void TestConsoleFrameReader::textLength()
{
    QFETCH(const QByteArray, input);
    QFETCH(const qint64, length);
    QFETCH(const QByteArray, rest);

    const BytesStream stream(input);
    ConsoleFrameReader reader(stream.file());
    QCOMPARE(qint64{reader.readLength(LengthForm::Text).value_or(0)}, length);
    QCOMPARE(reader.readBody(static_cast<quint32>(rest.size())), rest);
    QVERIFY(!reader.readBody(1));
}

void TestConsoleFrameReader::textLengthWithoutEnd()
{
    const EndlessStream stream(qint64{64} * 1024 * 1024, " ");
    ConsoleFrameReader reader(stream.file());
    const qint64 before = peakMemory();
    QVERIFY(!reader.readLength(LengthForm::Text));
    QVERIFY(sanitized || peakMemory() - before < qint64{1024} * 1024);
}

void TestConsoleFrameReader::framesFollowEachOther()
{
    const BytesStream stream(frame("one") + frame("") + frame(QByteArray("\0\xff", 2)));
    ConsoleFrameReader reader(stream.file());
    const QByteArrayList bodies = {"one", "", QByteArray("\0\xff", 2)};
    for (const QByteArray &body : bodies) {
        QCOMPARE(reader.readLength(LengthForm::Binary), static_cast<quint32>(body.size()));
        QCOMPARE(reader.readBody(static_cast<quint32>(body.size())), body);
    }
    QVERIFY(!reader.readLength(LengthForm::Binary));
}

void TestConsoleFrameReader::cutAnywhere_data()
{
    QTest::addColumn<bool>("asText");
    QTest::newRow("binary") << false;
    QTest::newRow("text") << true;
}

void TestConsoleFrameReader::cutAnywhere()
{
    QFETCH(const bool, asText);
    const auto form = asText ? LengthForm::Text : LengthForm::Binary;
    const QByteArray body("{\"id\":\"1\"}");
    const QByteArray prefix = asText ? QByteArray("10 ") : frame(body).first(4);
    const QByteArray whole = prefix + body;
    for (qsizetype kept = 0; kept < whole.size(); ++kept) {
        const BytesStream stream(whole.first(kept));
        ConsoleFrameReader reader(stream.file());
        const auto length = reader.readLength(form);
        if (kept >= prefix.size())
            QCOMPARE(length, 10u);
        if (!asText && kept < 4)
            QVERIFY(!length);
        QVERIFY(!length || !reader.readBody(*length));
        QVERIFY(!reader.readLength(form));
    }
}

void TestConsoleFrameReader::bodyLargerThanFirstPiece()
{
    QByteArray body(1'000'003, Qt::Uninitialized);
    for (qsizetype i = 0; i < body.size(); ++i)
        body[i] = static_cast<char>(i % 251);
    const BytesStream stream(frame(body) + frame("next"));
    ConsoleFrameReader reader(stream.file());
    QCOMPARE(reader.readLength(LengthForm::Binary), 1'000'003u);
    QVERIFY(reader.readBody(1'000'003) == body);
    QCOMPARE(reader.readLength(LengthForm::Binary), 4u);
    QCOMPARE(reader.readBody(4), QByteArray("next"));
}

void TestConsoleFrameReader::announcedButNotSent()
{
    const BytesStream stream(QByteArray(4, '\xff') + QByteArray(10, 'x'));
    ConsoleFrameReader reader(stream.file());
    const qint64 before = peakMemory();
    QCOMPARE(reader.readLength(LengthForm::Binary), maxLength);
    QVERIFY(!reader.readBody(maxLength));
    QVERIFY(sanitized || peakMemory() - before < qint64{1024} * 1024);
    QVERIFY(!reader.readLength(LengthForm::Binary));
}

void TestConsoleFrameReader::notEnoughMemory()
{
    if (sanitized)
        QSKIP("sanitizers need the address space themselves");
    const LogCapture log;
    const EndlessStream stream(maxLength, frame("next"));
    ConsoleFrameReader reader(stream.file());

    rlimit unlimited = {};
    QCOMPARE(::getrlimit(RLIMIT_AS, &unlimited), 0);
    rlimit limited = unlimited;
    limited.rlim_cur = rlim_t{1024} * 1024 * 1024;
    QCOMPARE(::setrlimit(RLIMIT_AS, &limited), 0);
    const auto body = reader.readBody(maxLength);
    QCOMPARE(::setrlimit(RLIMIT_AS, &unlimited), 0);

    QVERIFY(!body);
    QCOMPARE(log.texts(),
             QStringList(QStringLiteral("[ConsoleFrameReader]: WARNING: a message of 4294967295 "
                                        "bytes is dropped: not enough memory")));
    QCOMPARE(reader.readLength(LengthForm::Binary), 4u);
    QCOMPARE(reader.readBody(4), QByteArray("next"));
}

QTEST_GUILESS_MAIN(TestConsoleFrameReader)
#include "tst_consoleframereader.moc"
