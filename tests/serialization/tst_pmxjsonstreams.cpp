#include "pmxjsonserializeobject.h"
#include "pmxserializable.h"

#include <QTest>

#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <tuple>

using namespace std::string_literals;
using Stream = pmxSerializationIoStream;

namespace {

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
    void texts()
    {
        for (const std::string &bad :
             {""s, " "s, "nul"s, "-"s, "{\"a\":1"s, "{\"a\":\"b"s, "{\"a\":}"s, "{\"a\":1,}"s,
              "\"\\ud800\""s, "\"a\nb\""s, "\0{}"s, nested("[", "]", 101),
              nested("[{\"a\":", "}]", 51), nested("{\"a\":", "", 1'000'000)})
            QVERIFY2(!pmxJson2SerializationInputStream().BindToText(bad), bad.c_str());
        for (const std::string &good :
             {" \t\r\n{} "s, "{} and more }"s, "{\"a\":1e999}"s, "\"\xff\xfe\""s,
              nested("[", "]", 100), nested("[{\"a\":", "}]", 50)})
            QVERIFY2(pmxJson2SerializationInputStream().BindToText(good), good.c_str());
    }

    void plainValues()
    {
        // The name asked for, and what is found as a text, a bool and a number.
        const std::tuple<const char *, const char *, const char *> cases[] = {
            {R"({"v":"new"})", "v", "new !0 !9"},   {R"({"v":true})", "v", "!old 1 !9"},
            {R"({"v":"true"})", "v", "true !0 !9"}, {R"({"v":1.5})", "v", "!old !0 1.5"},
            {R"({"v":1e999})", "v", "!old !0 !9"},  {R"({"w":"new"})", "v", "!old !0 !9"},
            {R"("new")", "", "new !0 !9"},          {"true", "", "!old 1 !9"},
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
        Script empty([](Stream &) { return true; });
        QVERIFY(pmxJsonSerializeObject(empty, out, 0));
        QCOMPARE(out.str(), "{}");
        out.setstate(std::ios::badbit);
        QVERIFY(!pmxJsonSerializeObject(empty, out, 0));
    }
};

QTEST_GUILESS_MAIN(TestPmxJsonStreams)
#include "tst_pmxjsonstreams.moc"
