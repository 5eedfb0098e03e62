#include "pmxjsonserializeobject.h"
#include "pmxserializablesharedobjvector.h"

#include <QTest>

#include <functional>
#include <limits>
#include <locale>
#include <sstream>

using namespace std::string_literals;
using Stream = pmxSerializationIoStream;

namespace {

/// An element that needs its "n".
class Item : public pmxSerializable {
public:
    bool Serialize(Stream *stream, unsigned int) override
    {
        return stream->SerializeValueS("n", n, true);
    }
    int n = 0;
};

using ItemList = pmxSerializableSharedObjVector<Item>;

/// A record that does what a test wants.
class Script : public pmxSerializable {
public:
    explicit Script(std::function<bool(Stream &)> run) : m_run(std::move(run)) { }
    bool Serialize(Stream *stream, unsigned int) override { return m_run(*stream); }

private:
    std::function<bool(Stream &)> m_run;
};

bool write(Stream &stream, const char *name, std::string value)
{
    return stream.SerializeValue(name, value, true);
}

class GroupedDigits : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

Stream reader(const std::string &json)
{
    auto input = std::make_shared<pmxJson2SerializationInputStream>();
    if (!input->BindToText(json))
        qFatal("the test's own text is malformed");
    return Stream(input);
}

std::string nested(const std::string &open, const std::string &close, int levels)
{
    return QByteArray::fromStdString(open).repeated(levels).toStdString() + "0"
        + QByteArray::fromStdString(close).repeated(levels).toStdString();
}

/// What a required and an optional member "v" of that text are read as; "!" where that fails.
template <typename T> std::string readS(const char *text, T before)
{
    std::string result;
    for (const bool required : {true, false}) {
        T value = before;
        const bool ok = reader(R"({"v":)"s + text + "}").SerializeValueS("v", value, required);
        result += (ok ? " " : " !") + std::to_string(value);
    }
    return result;
}

} // namespace

class TestPmxJsonStreams : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void texts_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::addColumn<bool>("wellFormed");
        for (const char *text : {"", " ", "nul", "-", "{\"a\":1", "{\"a\":\"b", "{\"a\":}",
                                 "{\"a\":1,}", "\"\\ud800\"", "\"a\nb\""})
            QTest::addRow("bad: %s", text) << std::string(text) << false;
        for (const char *text : {" \t\r\n{} ", "{} and more }", "{\"a\":1e999}", "\"\xff\xfe\""})
            QTest::addRow("good: %s", text) << std::string(text) << true;
        QTest::newRow("zero byte first") << "\0{}"s << false;
        QTest::newRow("100 arrays") << nested("[", "]", 100) << true;
        QTest::newRow("101 arrays") << nested("[", "]", 101) << false;
        QTest::newRow("100 of both") << nested("[{\"a\":", "}]", 50) << true;
        QTest::newRow("102 of both") << nested("[{\"a\":", "}]", 51) << false;
        QTest::newRow("a million objects") << nested("{\"a\":", "", 1'000'000) << false;
    }

    void texts()
    {
        QFETCH(const std::string, text);
        QFETCH(const bool, wellFormed);
        QCOMPARE(pmxJson2SerializationInputStream().BindToText(text), wellFormed);
    }

    void plainValues()
    {
        // The name asked for, and what is found as a text, a bool and a number.
        const std::tuple<const char *, const char *, const char *> cases[] = {
            {R"({"v":"new"})", "v", "new !0 !9"},
            {R"({"v":true})", "v", "!old 1 !9"},
            {R"({"v":"true"})", "v", "true !0 !9"},
            {R"({"v":1.5})", "v", "!old !0 1.5"},
            {R"({"v":1e999})", "v", "!old !0 !9"},
            {R"({"v":{}})", "v", "!old !0 !9"},
            {R"({"w":"new"})", "v", "!old !0 !9"},
            {R"("new")", "", "new !0 !9"},
            {"true", "", "!old 1 !9"},
            {R"(["new"])", "v", "!old !0 !9"}};
        for (const auto &[json, name, expected] : cases) {
            Stream stream = reader(json);
            std::string text = "old";
            bool boolean = false;
            double number = 9;
            std::ostringstream found;
            found << (stream.SerializeValue(name, text, true) ? "" : "!") << text
                  << (stream.SerializeBoolValue(name, boolean, true) ? " " : " !") << boolean
                  << (stream.SerializeDoubleValue(name, number, true) ? " " : " !") << number;
            QCOMPARE(found.str(), expected);
            QVERIFY(stream.SerializeValue(name, text, false));
        }
    }

    void textsAsNumbers()
    {
        QCOMPARE(readS(R"("3")", 9), " 3 3");
        QCOMPARE(readS("3", 9), " !9 9");
        QCOMPARE(readS(R"("")", 9), " !9 9");
        QCOMPARE(readS(R"("x3")", 9), " !9 9");
        QCOMPARE(readS(R"(" 7 apples")", 9), " 7 7");
        QCOMPARE(readS(R"("99999999999")", 9), " !9 9");
        QCOMPARE(readS(R"("-1")", quint32(9)), " 4294967295 4294967295");
        QCOMPARE(readS(R"("-1")", quint64(9)), " 18446744073709551615 18446744073709551615");
        QCOMPARE(readS(R"("18446744073709551616")", quint64(9)), " !9 9");
        QCOMPARE(readS(R"("1")", false), " 1 1");
        QCOMPARE(readS(R"("0")", true), " 0 0");
        QCOMPARE(readS(R"("true")", false), " !0 0");
        QCOMPARE(readS(R"("2")", false), " !0 0");
    }

    void numbersInAnyLocale()
    {
        const std::locale before =
            std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
        const std::string written = pmxTextFromValue(1234567);
        const std::string read = readS(R"("7654321")", 9);
        std::locale::global(before);
        QCOMPARE(written, "1234567");
        QVERIFY(QByteArray::fromStdString(read).replace('.', "").startsWith(" 7654321"));
    }

    void lists()
    {
        const std::tuple<const char *, bool, const char *> cases[] = {
            {R"({"item":[]})", true, "{}"},
            {R"({"item":{"n":"1"}})", true, R"({"item":[{"n":"1"}]})"},
            {R"({"item":[{"n":"3"},{"n":"1"}]})", true, R"({"item":[{"n":"3"},{"n":"1"}]})"},
            {R"({"item":[{"n":"1"},{"m":"2"},{"n":"3"}]})", false, R"({"item":[{"n":"1"}]})"},
            {R"({"item":["1"]})", false, "{}"},
            {R"("item")", true, "{}"}};
        ItemList list;
        for (const auto &[json, ok, rewritten] : cases) {
            QCOMPARE(pmxJsonSerializeObject(list, std::string(json), 0), ok);
            std::ostringstream out;
            QVERIFY(pmxJsonSerializeObject(list, out, 0));
            QCOMPARE(out.str(), rewritten);
        }
    }

    void writtenText()
    {
        Script script([](Stream &s) {
            bool yes = true;
            double number = 1.5;
            double whole = 45;
            double infinite = std::numeric_limits<double>::infinity();
            const auto first = s.SelectOrCreateNode("list", false);
            const auto second = s.SelectOrCreateNode("list", false);
            const auto text = s.SelectOrCreateNode("texts", true);
            return write(*second, "n", "2") && write(*first, "n", "1")
                && write(*first, "n", "last value") && s.SelectOrCreateNode("marked", true)
                && s.SelectOrCreateNode("node", false) && write(*text, "", "x")
                && s.SerializeDoubleValue("whole", whole, true)
                && s.SerializeDoubleValue("B", number, true) && s.SerializeValueS("yes", yes, true)
                && s.SerializeBoolValue("true", yes, true)
                && write(s, "escapes", "\"\\/\b\f\n\r\t\x01\x7f\xc3\xa9")
                // What cannot be said is refused and changes nothing.
                && !write(s, "", "x") && !write(*text, "n", "y")
                && !s.SelectOrCreateNode("escapes", false)
                && !s.SerializeDoubleValue("infinite", infinite, false);
        });
        std::ostringstream out;
        QVERIFY(pmxJsonSerializeObject(script, out, 0));
        QCOMPARE(out.str(),
                 "{\"B\":1.5,\"escapes\":\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0001\\u007f\xc3\xa9\","
                 "\"list\":[{\"n\":\"last value\"},{\"n\":\"2\"}],\"marked\":[{}],\"node\":{},"
                 "\"texts\":[\"x\"],\"true\":true,\"whole\":45,\"yes\":\"1\"}");
    }

    void failedRecordWritesNothing()
    {
        Script failing([](Stream &stream) { return write(stream, "a", "x") && false; });
        std::ostringstream out;
        QVERIFY(!pmxJsonSerializeObject(failing, out, 0));
        QCOMPARE(out.str(), "");
        ItemList list;
        out.setstate(std::ios::badbit);
        QVERIFY(!pmxJsonSerializeObject(list, out, 0));
    }
};

QTEST_GUILESS_MAIN(TestPmxJsonStreams)
#include "tst_pmxjsonstreams.moc"
