#include "pmxjsonserializeobject.h"
#include "pmxserializablesharedobjvector.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>

using namespace std::string_literals;

namespace {

/// An element that needs its "n".
class Item : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        seenFlags = flags;
        return stream->SerializeValueS("n", n, true);
    }
    int n = 0;
    unsigned int seenFlags = 0;
};

/// A record that is nothing but a list.
class ItemList : public pmxSerializableSharedObjVector<Item> {
public:
    using pmxSerializableSharedObjVector<Item>::pmxSerializableSharedObjVector;
    QString numbers() const
    {
        QStringList texts;
        for (const auto &item : *this)
            texts.append(QString::number(item->n));
        return texts.join(u' ');
    }
};

/// Writes whatever a test wants written.
class Script : public pmxSerializable {
public:
    explicit Script(std::function<bool(pmxSerializationIoStream &)> run) : m_run(std::move(run)) { }
    bool Serialize(pmxSerializationIoStream *stream, unsigned int) override
    {
        return m_run(*stream);
    }

private:
    std::function<bool(pmxSerializationIoStream &)> m_run;
};

class GroupedDigits : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '.'; }
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

pmxSerializationIoStream reader(const char *json)
{
    auto input = std::make_shared<pmxJson2SerializationInputStream>();
    if (!input->BindToText(json))
        qFatal("the test's own text is malformed");
    return pmxSerializationIoStream(input);
}

std::string nested(const std::string &open, const std::string &inner, const std::string &close,
                   int levels)
{
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += open;
    text += inner;
    for (int i = 0; i < levels; ++i)
        text += close;
    return text;
}

template <typename T> QString readS(const char *json, T before, bool required)
{
    const bool ok = reader(json).SerializeValueS("v", before, required);
    return QStringLiteral("%1 %2").arg(ok ? u"true"_qs : u"false"_qs).arg(before);
}

} // namespace

class TestPmxJsonStreams : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void texts_data();
    void texts();
    void plainValues_data();
    void plainValues();
    void textsAsNumbers();
    void textsInAnyLocale();
    void nodesOfAName_data();
    void nodesOfAName();
    void childOfNoObject_data();
    void childOfNoObject();
    void nodeOutlivesItsStream();
    void lists_data();
    void lists();
    void listReadTwice();
    void writtenTexts_data();
    void writtenTexts();
    void flushesOnce();
    void failedRecordWritesNothing();
    void failedTarget();
};

void TestPmxJsonStreams::texts_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<bool>("wellFormed");

    for (const char *text : {"", " ", "hello", "nul", "-", R"({"a":"b")", R"({"a":"b)", R"({"a":})",
                             R"({"a":"b",})", R"("\ud800")"})
        QTest::addRow("bad: %s", text) << std::string(text) << false;
    QTest::newRow("line break in a string") << "\"a\nb\""s << false;
    QTest::newRow("zero byte first") << "\0{}"s << false;

    QTest::newRow("blanks around") << " \t\r\n{} "s << true;
    QTest::newRow("text after the value") << "{} and more }"s << true;
    QTest::newRow("number beyond a double") << R"({"a":1e999,"b":-1e999})"s << true;
    QTest::newRow("bytes that are no UTF-8") << "\"\xff\xfe\xc3\""s << true;

    for (const int levels : {100, 101}) {
        QTest::addRow("%d arrays", levels) << nested("[", "", "]", levels) << (levels == 100);
        QTest::addRow("%d objects", levels)
            << nested("{\"a\":", "0", "}", levels) << (levels == 100);
    }
    QTest::newRow("100 of both") << nested("[{\"a\":", "0", "}]", 50) << true;
    QTest::newRow("102 of both") << nested("[{\"a\":", "0", "}]", 51) << false;
    QTest::newRow("a million objects") << nested("{\"a\":", "0", "", 1'000'000) << false;
}

void TestPmxJsonStreams::texts()
{
    QFETCH(std::string, text);
    QFETCH(bool, wellFormed);

    pmxJson2SerializationInputStream fromText;
    QCOMPARE(fromText.BindToText(text), wellFormed);
    pmxJson2SerializationInputStream fromStream;
    std::istringstream stream(text);
    QCOMPARE(fromStream.BindToStream(&stream), wellFormed);
}

void TestPmxJsonStreams::plainValues_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<std::string>("name");
    QTest::addColumn<bool>("readsText");
    QTest::addColumn<bool>("readsBool");
    QTest::addColumn<bool>("readsDouble");

    const auto row = [](const char *title, const char *json, const char *name, bool text,
                        bool boolean, bool number) {
        QTest::newRow(title) << QByteArray(json) << std::string(name) << text << boolean << number;
    };
    row("text", R"({"v":"new"})", "v", true, false, false);
    row("true", R"({"v":true})", "v", false, true, false);
    row("text that says true", R"({"v":"true"})", "v", true, false, false);
    row("number", R"({"v":1.5})", "v", false, false, true);
    row("null", R"({"v":null})", "v", false, false, false);
    row("number beyond a double", R"({"v":1e999})", "v", false, false, false);
    row("object", R"({"v":{}})", "v", false, false, false);
    row("missing", R"({"w":"new"})", "v", false, false, false);
    row("the text itself", R"("new")", "", true, false, false);
    row("the bool itself", "true", "", false, true, false);
    row("the number itself", "1.5", "", false, false, true);
    row("member of a text", R"("new")", "v", false, false, false);
    row("member of an array", R"(["new"])", "v", false, false, false);
}

void TestPmxJsonStreams::plainValues()
{
    QFETCH(QByteArray, json);
    QFETCH(std::string, name);
    QFETCH(bool, readsText);
    QFETCH(bool, readsBool);
    QFETCH(bool, readsDouble);
    auto stream = reader(json.constData());

    for (const bool required : {true, false}) {
        std::string text = "old";
        QCOMPARE(stream.SerializeValue(name, text, required, false), readsText || !required);
        QCOMPARE(text == "old", !readsText);
        bool boolean = false;
        QCOMPARE(stream.SerializeBoolValue(name, boolean, required, false), readsBool || !required);
        QCOMPARE(boolean, readsBool);
        double number = 9;
        QCOMPARE(stream.SerializeDoubleValue(name, number, required, false),
                 readsDouble || !required);
        QCOMPARE(number, readsDouble ? 1.5 : 9);
    }
}

void TestPmxJsonStreams::textsAsNumbers()
{
    QCOMPARE(readS(R"({"v":"3"})", 9, true), u"true 3"_qs);
    QCOMPARE(readS(R"({"v":3})", 9, true), u"false 9"_qs);
    QCOMPARE(readS(R"({"v":3})", 9, false), u"true 9"_qs);
    QCOMPARE(readS(R"({"v":""})", 9, true), u"false 9"_qs);
    QCOMPARE(readS(R"({"v":"x3"})", 9, true), u"false 9"_qs);
    QCOMPARE(readS(R"({"v":" 7 apples"})", 9, true), u"true 7"_qs);
    QCOMPARE(readS(R"({"v":"99999999999"})", 9, true), u"false 9"_qs);
    QCOMPARE(readS(R"({"v":"-1"})", quint32(9), true), u"true 4294967295"_qs);
    QCOMPARE(readS(R"({"v":"-1"})", quint64(9), true), u"true 18446744073709551615"_qs);
    QCOMPARE(readS(R"({"v":"18446744073709551616"})", quint64(9), true), u"false 9"_qs);
    QCOMPARE(readS(R"({"v":"-9223372036854775808"})", qint64(9), true),
             u"true -9223372036854775808"_qs);

    QCOMPARE(readS(R"({"v":"1"})", false, true), u"true 1"_qs);
    QCOMPARE(readS(R"({"v":"0"})", true, true), u"true 0"_qs);
    QCOMPARE(readS(R"({"v":"true"})", false, true), u"false 0"_qs);
    QCOMPARE(readS(R"({"v":"2"})", false, true), u"false 0"_qs);
    QCOMPARE(readS(R"({"v":true})", false, true), u"false 0"_qs);

    enum Plain : int { Zero, Five = 5 };
    Plain value = Zero;
    QVERIFY(reader(R"({"v":"5"})").SerializeValueS("v", value, true, false));
    QCOMPARE(value, Five);
}

void TestPmxJsonStreams::textsInAnyLocale()
{
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
    std::string written = pmxTextFromValue(1234567);
    int read = 0;
    const bool ok = pmxValueFromText("7654321", read);
    std::locale::global(before);

    QCOMPARE(written, "1234567"s);
    QVERIFY(ok);
    QCOMPARE(read, 7654321);
}

void TestPmxJsonStreams::nodesOfAName_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<std::string>("name");
    QTest::addColumn<QString>("values");

    QTest::newRow("array") << QByteArray(R"({"v":["a","b"],"w":["c"]})") << "v"s << u"a b"_qs;
    QTest::newRow("empty array") << QByteArray(R"({"v":[]})") << "v"s << u""_qs;
    QTest::newRow("single value") << QByteArray(R"({"v":"a"})") << "v"s << u"a"_qs;
    QTest::newRow("null") << QByteArray(R"({"v":null})") << "v"s << u"?"_qs;
    QTest::newRow("missing") << QByteArray(R"({"w":["a"]})") << "v"s << u""_qs;
    QTest::newRow("node is an array") << QByteArray(R"(["a","b"])") << "v"s << u"a b"_qs;
    QTest::newRow("node is a text") << QByteArray(R"("a")") << "v"s << u""_qs;
    QTest::newRow("object itself") << QByteArray(R"({"v":"a"})") << ""s << u"?"_qs;
    QTest::newRow("array itself") << QByteArray(R"(["a"])") << ""s << u"a"_qs;
}

void TestPmxJsonStreams::nodesOfAName()
{
    QFETCH(QByteArray, json);
    QFETCH(std::string, name);
    QFETCH(QString, values);

    QStringList found;
    const auto nodes = reader(json.constData()).SelectNodes(name);
    for (const auto &node : nodes) {
        std::string text = "?";
        node->SerializeValue("", text, false, false);
        found.append(QString::fromStdString(text));
    }
    QCOMPARE(found.join(u' '), values);
}

void TestPmxJsonStreams::childOfNoObject_data()
{
    QTest::addColumn<QByteArray>("json");
    for (const char *json : {R"("text")", "5", "true", "null", "[]", R"([{"v":{}}])"})
        QTest::newRow(json) << QByteArray(json);
}

void TestPmxJsonStreams::childOfNoObject()
{
    QFETCH(QByteArray, json);
    auto stream = reader(json.constData());
    try {
        stream.SelectOrCreateNode("v", false);
    } catch (const std::runtime_error &error) {
        QCOMPARE(error.what(),
                 R"x("type mismatch! call is<type>() before get<type>()" && is<object>())x");
        QVERIFY(stream.SelectOrCreateNode("", false));
        return;
    }
    QFAIL("nothing was thrown");
}

void TestPmxJsonStreams::nodeOutlivesItsStream()
{
    auto input = std::make_shared<pmxJson2SerializationInputStream>();
    QVERIFY(input->BindToText(R"({"a":{"b":{"v":"deep"}}})"));
    QVERIFY(!input->SelectNode("missing"));
    const auto node = input->SelectNode("a")->SelectNode("b");
    input->clear();
    std::string text;
    QVERIFY(!input->ReadValue("a", text, false));
    QVERIFY(!input->BindToText("{"));
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, input->SelectNode("a"));
    input.reset();
    QVERIFY(node->ReadValue("v", text, false));
    QCOMPARE(text, "deep"s);
}

void TestPmxJsonStreams::lists_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("singleAsObject");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("numbers");
    QTest::addColumn<std::string>("rewritten");

    QTest::newRow("none") << QByteArray("{}") << false << true << u""_qs << "{}"s;
    QTest::newRow("empty") << QByteArray(R"({"item":[]})") << false << true << u""_qs << "{}"s;
    QTest::newRow("single object") << QByteArray(R"({"item":{"n":"1"}})") << false << true
                                   << u"1"_qs << R"({"item":[{"n":"1"}]})"s;
    QTest::newRow("single without mark") << QByteArray(R"({"item":[{"n":"1"}]})") << true << true
                                         << u"1"_qs << R"({"item":{"n":"1"}})"s;
    for (const bool singleAsObject : {false, true}) {
        QTest::addRow("three, %d", singleAsObject)
            << QByteArray(R"({"item":[{"n":"3"},{"n":"1"},{"n":"2"}]})") << singleAsObject << true
            << u"3 1 2"_qs << R"({"item":[{"n":"3"},{"n":"1"},{"n":"2"}]})"s;
    }
    QTest::newRow("failing element") << QByteArray(R"({"item":[{"n":"1"},{"m":"2"},{"n":"3"}]})")
                                     << false << false << u"1"_qs << R"({"item":[{"n":"1"}]})"s;
    QTest::newRow("element is no object")
        << QByteArray(R"({"item":["1"]})") << false << false << u""_qs << "{}"s;
    QTest::newRow("node is a text") << QByteArray(R"("item")") << false << true << u""_qs << "{}"s;
}

void TestPmxJsonStreams::lists()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, singleAsObject);
    QFETCH(bool, ok);
    QFETCH(QString, numbers);
    QFETCH(std::string, rewritten);

    ItemList list(singleAsObject);
    QCOMPARE(pmxJsonSerializeObject(list, json.toStdString(), 0), ok);
    QCOMPARE(list.numbers(), numbers);
    std::ostringstream out;
    QVERIFY(pmxJsonSerializeObject(list, out, 0));
    QCOMPARE(out.str(), rewritten);
}

void TestPmxJsonStreams::listReadTwice()
{
    ItemList list;
    QVERIFY(pmxJsonSerializeObject(list, R"({"item":[{"n":"1"},{"n":"2"}]})"s, 0));
    QVERIFY(pmxJsonSerializeObject(list, R"({"item":[{"n":"3"}]})"s, 77));
    QCOMPARE(list.numbers(), u"3"_qs);
    QCOMPARE(list.front()->seenFlags, 77U);
    QVERIFY(!pmxJsonSerializeObject(list, "no JSON"s, 0));
    QCOMPARE(list.numbers(), u"3"_qs);
}

void TestPmxJsonStreams::writtenTexts_data()
{
    using Stream = pmxSerializationIoStream;
    QTest::addColumn<std::shared_ptr<Script>>("script");
    QTest::addColumn<std::string>("text");
    const auto row = [](const char *title, std::string text, auto run) {
        QTest::newRow(title) << std::make_shared<Script>(run) << std::move(text);
    };

    row("nothing", "{}", [](Stream &) { return true; });
    row("keys in alphabetical order", R"({"B":"2","a":true,"b":1.5,"c":"1"})", [](Stream &s) {
        bool yes = true;
        double number = 1.5;
        std::string two = "2";
        return s.SerializeValueS("c", yes, true) && s.SerializeDoubleValue("b", number, true)
            && s.SerializeBoolValue("a", yes, true) && s.SerializeValue("B", two, true);
    });
    row("whole number", R"({"n":45})", [](Stream &s) {
        double number = 45;
        return s.SerializeDoubleValue("n", number, true);
    });
    row("escapes",
        R"({"t":"\"\\\/\b\f\n\r\t\u0001\u007f)"
        "\xc3\xa9\"}",
        [](Stream &s) {
            std::string text = "\"\\/\b\f\n\r\t\x01\x7f\xc3\xa9";
            return s.SerializeValue("t", text, true);
        });
    row("last value of a name", R"({"t":"2"})", [](Stream &s) {
        std::string one = "1";
        std::string two = "2";
        return s.SerializeValue("t", one, true) && s.SerializeValue("t", two, true);
    });
    row("children", R"({"a":{},"b":[{}],"c":[{"n":"1"},{"n":"2"}],"d":{"e":{"n":"3"}}})",
        [](Stream &s) {
            int one = 1;
            int two = 2;
            int three = 3;
            const auto c1 = s.SelectOrCreateNode("c", false);
            const auto d = s.SelectOrCreateNode("d", false);
            const auto c2 = s.SelectOrCreateNode("c", false);
            return c2->SerializeValueS("n", two, true) && c1->SerializeValueS("n", one, true)
                && d->SelectOrCreateNode("e", false)->SerializeValueS("n", three, true)
                && s.SelectOrCreateNode("b", true) && s.SelectOrCreateNode("a", false);
        });
    row("no child beside a plain value", R"({"a":"x"})", [](Stream &s) {
        std::string text = "x";
        return s.SerializeValue("a", text, true) && !s.SelectOrCreateNode("a", false);
    });
    row("nodes that are texts", R"({"item":["x","y"]})", [](Stream &s) {
        std::string x = "x";
        std::string y = "y";
        const auto node = s.SelectOrCreateNode("item", true);
        const bool first = node->SerializeValue("", x, true);
        // It is no object any more.
        const bool second = node->SerializeValue("", y, true) || node->SerializeValue("n", y, true)
            || node->SelectOrCreateNode("n", false);
        return first && !second && s.SelectOrCreateNode("item", true)->SerializeValue("", y, true);
    });
    row("an object does not become a text", R"({"a":"x"})", [](Stream &s) {
        std::string x = "x";
        return s.SerializeValue("a", x, true) && !s.SerializeValue("", x, true);
    });
    row("the node itself", R"({"a":"x"})", [](Stream &s) {
        std::string x = "x";
        return s.SelectOrCreateNode("", false)->SerializeValue("a", x, true);
    });
    row("no nodes to select", "{}", [](Stream &s) { return s.SelectNodes("item").empty(); });
    row("numbers that JSON cannot say", "{}", [](Stream &s) {
        double infinite = std::numeric_limits<double>::infinity();
        double none = std::nan("");
        return !s.SerializeDoubleValue("i", infinite, false)
            && !s.SerializeDoubleValue("n", none, false);
    });
}

void TestPmxJsonStreams::writtenTexts()
{
    QFETCH(std::shared_ptr<Script>, script);
    QFETCH(std::string, text);

    std::ostringstream out;
    QVERIFY(pmxJsonSerializeObject(*script, out, 0));
    QCOMPARE(out.str(), text);
}

void TestPmxJsonStreams::flushesOnce()
{
    std::ostringstream out;
    {
        pmxJson2SerializationOutputStream stream;
        QVERIFY(stream.WriteValue("a", "x", false));
        stream.Flush();
        stream.BindToStream(&out);
        stream.Flush();
        QVERIFY(stream.WriteValue("b", "y", false));
        stream.Flush();
    }
    QCOMPARE(out.str(), R"({"a":"x"})"s);
    {
        pmxJson2SerializationOutputStream stream;
        stream.BindToStream(&out);
        QVERIFY(stream.WriteValue("a", "x", false));
        QVERIFY(stream.CreateNode("b", false));
        stream.clear();
        QVERIFY(stream.WriteValue("c", "z", false));
    }
    QCOMPARE(out.str(), R"({"a":"x"}{"c":"z"})"s);
}

void TestPmxJsonStreams::failedRecordWritesNothing()
{
    Script failing([](pmxSerializationIoStream &stream) {
        std::string text = "x";
        stream.SerializeValue("a", text, true);
        return false;
    });
    std::ostringstream out;
    QVERIFY(!pmxJsonSerializeObject(failing, out, 0));
    pmxSerializable forgetful;
    QVERIFY(!pmxJsonSerializeObject(forgetful, out, 0));
    QVERIFY(!pmxJsonSerializeObject(forgetful, "{}"s, 0));
    QCOMPARE(out.str(), std::string());
}

void TestPmxJsonStreams::failedTarget()
{
    ItemList list;
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    QVERIFY(!pmxJsonSerializeObject(list, out, 0));
}

QTEST_GUILESS_MAIN(TestPmxJsonStreams)
#include "tst_pmxjsonstreams.moc"
