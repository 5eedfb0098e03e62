#include "logcapture.h"
#include "pmxjsonserializeobject.h"
#include "pmxserializable.h"
#include "vectors.h"

#include <functional>
#include <limits>
#include <memory>
#include <sstream>

using namespace std::string_literals;
using Stream = pmxSerializationIoStream;

namespace {

/// A record with a function of the test as its Serialize.
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

bool isRead(const std::string &json) { return pmxJson2SerializationInputStream().BindToText(json); }

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

/// The results of reading a required and an optional member "v"; "!" for a failure.
template <typename T> std::string readS(const std::string &json, T before)
{
    std::string result;
    for (const bool required : {true, false}) {
        T value = before;
        const bool ok = reader(json).SerializeValueS("v", value, required);
        result += (ok ? " " : " !") + std::to_string(value);
    }
    return result;
}

} // namespace

class TestPmxJsonStreams : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void texts_data() { ADD_VECTORS("streams.json", "texts"); }
    void texts()
    {
        const VectorRow row;
        QCOMPARE(isRead(row.bytes(0).toStdString()), row.at(1).toBool());
        QVERIFY(!pmxJson2SerializationInputStream().BindToStream(nullptr));
    }

    void nesting()
    {
        QVERIFY(isRead(nested("[", "]", 100)) && !isRead(nested("[", "]", 101)));
        QVERIFY(isRead(nested("[{\"a\":", "}]", 50)) && !isRead(nested("[{\"a\":", "}]", 51)));
        QVERIFY(!isRead(nested("{\"a\":", "", 1'000'000)));
    }

    /// Columns: the text, the requested name, the value read as a text, a bool and a number, and
    /// how many warnings are logged.
    void plainValues_data() { ADD_VECTORS("streams.json", "plainValues"); }
    void plainValues()
    {
        const VectorRow row;
        const LogCapture log;
        Stream stream = reader(row.bytes(0).toStdString());
        const std::string name = row.bytes(1).toStdString();
        std::string text = "old";
        bool boolean = false;
        double number = 9;
        std::ostringstream found;
        found << (stream.SerializeValue(name, text, true) ? "" : "!") << text
              << (stream.SerializeBoolValue(name, boolean, true) ? " " : " !") << boolean
              << (stream.SerializeDoubleValue(name, number, true) ? " " : " !") << number;
        QCOMPARE(found.str(), row.bytes(2).toStdString());
        QVERIFY(stream.SerializeValue(name, text, false));
        QCOMPARE(log.texts().size(), row.at(3).toInt());
    }

    void textsAsNumbers_data() { ADD_VECTORS("streams.json", "textsAsNumbers"); }
    void textsAsNumbers()
    {
        const VectorRow row;
        const std::string json = R"({"v":)"s + row.bytes(0).toStdString() + "}";
        const QByteArray type = row.bytes(1);
        QCOMPARE(type == "int"           ? readS(json, 9)
                     : type == "quint32" ? readS(json, quint32(9))
                     : type == "quint64" ? readS(json, quint64(9))
                                         : readS(json, true),
                 row.bytes(2).toStdString());
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
                && s.SelectOrCreateNode("node", false) && write(s, "node", "replaced")
                && write(*text, "", "x") && s.SerializeDoubleValue("whole", whole, true)
                && s.SerializeDoubleValue("B", number, true) && s.SerializeValueS("yes", yes, true)
                && s.SerializeBoolValue("true", yes, true)
                && write(s, "escapes", "\"\\/\b\f\n\r\t\x01\x7f\xc3\xa9")
                // An invalid write is refused and changes nothing.
                && !write(s, "", "x") && !write(*first, "", "x") && !write(*text, "n", "y")
                && !text->SelectOrCreateNode("n", false) && !s.SelectOrCreateNode("escapes", false)
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
