#include "abstractjsonrequestsmanager.h"
#include "consolemessagesreceiver.h"
#include "consolemessagessender.h"
#include "frames.h"
#include "keystatewatcher.h"
#include "outputfile.h"
#include "pmxkovbhipcbrowserproxytaskprocessor.h"
#include "pmxkovbhipchandshaketaskprocessor.h"
#include "pmxkovbhipckeystatetaskprocessor.h"
#include "pmxkovbhipckovjsontaskprocessor.h"
#include "pmxkovbhipcuistringstaskprocessor.h"
#include "pmxtaskresponses.h"

#include <QTest>
#include <QTranslator>

#include <algorithm>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>

using Strings = QStringList;

Q_DECLARE_METATYPE(bool pmxKovBhIpcTaskHandshake::*)

class TestTaskProcessors : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void handshakeSetsEachFlag_data();
    void handshakeSetsEachFlag();
    void handshakeClearsFlags();
    void handshakeWithoutChannel();
    void uiStrings();
    void uiStringsTranslated();
    void keyStateAnswers();
    void keyStatePushes();
    void browserProxy();
    void kovJson_data();
    void kovJson();
    void kovJsonBadId_data();
    void kovJsonBadId();
};

namespace {

/// The answer of a processor to a task, as it would be sent.
QString answerTo(pmxKovBhIpcTaskProcessor &processor, const std::shared_ptr<pmxKovBhIpcTask> &task)
{
    Strings answers;
    processor.process(task,
                      [&](const std::shared_ptr<pmxKovBhIpcTask> &answered,
                          const std::shared_ptr<pmxKovBhIpcTaskResponse> &response) {
                          if (answered == task)
                              answers.append(pmxResponseText(*response).value_or(QString()));
                      });
    return answers.join(u'|');
}

std::shared_ptr<pmxKovBhIpcTask> taskOf(const std::string &type, const std::string &id = "7")
{
    auto task = std::make_shared<pmxKovBhIpcTask>();
    task->id = id;
    task->type = type;
    return task;
}

/// Translates every text of the context "QObject" by turning it round.
class BackwardTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        if (qstrcmp(context, "QObject") != 0)
            return {};
        QString text = QString::fromUtf8(sourceText);
        text.replace(QStringLiteral("%1"), QStringLiteral("1%"));
        std::reverse(text.begin(), text.end());
        return text;
    }
};

/// A key that a test holds down.
class HeldKey : public KeyStateWatcher {
public:
    HeldKey() : KeyStateWatcher(45) { }
    void update() override { setPressed(held); }
    bool held = false;
};

class JsonRequests : public AbstractJsonRequestsManager {
public:
    qint64 nextId() override { return 1; }
    void send(qint64 id, const QString &json, bool isRequest) override
    {
        sent.append({id, json, isRequest});
    }
    QList<std::tuple<qint64, QString, bool>> sent;
};

} // namespace

void TestTaskProcessors::handshakeSetsEachFlag_data()
{
    QTest::addColumn<bool pmxKovBhIpcTaskHandshake::*>("flag");
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<Strings>("received");

    const QByteArray plainBegin("a\0\0\0{\"bt\":true,", 14);
    const QByteArray plainEnd("\"yt\":false}");
    const Strings plainReceived{QStringLiteral("%41."), QStringLiteral("JTQx")};
    QTest::newRow("none") << static_cast<bool pmxKovBhIpcTaskHandshake::*>(nullptr) << plainBegin
                          << plainEnd << plainReceived;
    QTest::newRow("line break") << &pmxKovBhIpcTaskHandshake::response_add_crlf << plainBegin
                                << plainEnd + "\r\n"
                                << plainReceived;
    QTest::newRow("text length") << &pmxKovBhIpcTaskHandshake::response_send_data_len_as_string
                                 << QByteArray("97 {\"bt\":true,") << plainEnd << plainReceived;
    QTest::newRow("percent out") << &pmxKovBhIpcTaskHandshake::uri_encoding_for_send
                                 << QByteArray("\xb5\0\0\0%7B%22bt%22%3Atrue%2C", 25)
                                 << QByteArray("%22yt%22%3Afalse%7D") << plainReceived;
    QTest::newRow("base64 out") << &pmxKovBhIpcTaskHandshake::base64_encoding_for_send
                                << QByteArray("\x84\0\0\0eyJidCI6dHJ1ZSwi", 20)
                                << QByteArray("IiwieXQiOmZhbHNlfQ==") << plainReceived;
    QTest::newRow("percent in") << &pmxKovBhIpcTaskHandshake::uri_encoding_for_rcv << plainBegin
                                << plainEnd
                                << Strings{QStringLiteral("A."), QStringLiteral("JTQx")};
    QTest::newRow("base64 in") << &pmxKovBhIpcTaskHandshake::base64_encoding_for_rcv << plainBegin
                               << plainEnd << Strings{QString(), QStringLiteral("%41")};
}

void TestTaskProcessors::handshakeSetsEachFlag()
{
    QFETCH(bool pmxKovBhIpcTaskHandshake::*const, flag);
    QFETCH(const QByteArray, begin);
    QFETCH(const QByteArray, end);
    QFETCH(const Strings, received);

    const OutputFile output;
    const BytesStream input(frame("%41.") + frame("JTQx"));
    const auto sender = QSharedPointer<ConsoleMessagesSender>::create(nullptr, output.file());
    const auto receiver = QSharedPointer<ConsoleMessagesReceiver>::create(nullptr, input.file());
    Strings messages;
    connect(receiver.data(), &ConsoleMessagesReceiver::gotMessage, this,
            [&messages](const QString &message) { messages.append(message); });
    pmxKovBhIpcHandshakeTaskProcessor processor(receiver, sender);

    const auto task = taskOf("handshake");
    if (flag)
        task->handshake.*flag = true;
    sender->sendMessage(answerTo(processor, task));
    QVERIFY2(output.written().startsWith(begin), output.written().constData());
    QVERIFY2(output.written().endsWith(end), output.written().constData());
    receiver->receive();
    receiver->receive();
    QCOMPARE(messages, received);
}

void TestTaskProcessors::handshakeClearsFlags()
{
    const OutputFile output;
    const BytesStream input(frame("%41."));
    const auto sender = QSharedPointer<ConsoleMessagesSender>::create(nullptr, output.file());
    const auto receiver = QSharedPointer<ConsoleMessagesReceiver>::create(nullptr, input.file());
    QString message;
    connect(receiver.data(), &ConsoleMessagesReceiver::gotMessage, this,
            [&message](const QString &received) { message = received; });
    sender->enableFlags(1 | 2 | 4 | 8, true);
    receiver->enableFlags(1 | 2, true);
    pmxKovBhIpcHandshakeTaskProcessor processor(receiver, sender);
    answerTo(processor, taskOf("handshake"));
    sender->sendMessage(QStringLiteral("{}"));
    QCOMPARE(output.written(), frame("{}"));
    receiver->receive();
    QCOMPARE(message, QStringLiteral("%41."));
}

void TestTaskProcessors::handshakeWithoutChannel()
{
    pmxKovBhIpcHandshakeTaskProcessor processor({}, {});
    QCOMPARE(answerTo(processor, taskOf("handshake")),
             QStringLiteral("{\"bt\":true,\"error\":\"\",\"id\":\"7\",\"result\":\"\","
                            "\"type\":\"handshake\",\"version\":\"6.25.0.6016\",\"yt\":false}"));
}

void TestTaskProcessors::uiStrings()
{
    pmxKovBhIpcUiStringsTaskProcessor processor;
    QCOMPARE(answerTo(processor, taskOf("ui_strings now", "a \"b\"")),
             QStringLiteral("{\"error\":\"\",\"id\":\"a \\\"b\\\"\",\"result\":\"\",\"strings\":{"
                            "\"dlall\":\"Download all with KOV\",\"dlbykov\":\"\","
                            "\"dllink\":\"Download with KOV\","
                            "\"dlselected\":\"Download selected with KOV\","
                            "\"dlvideo\":\"Download video with KOV\"},"
                            "\"type\":\"ui_strings now\"}"));
}

void TestTaskProcessors::uiStringsTranslated()
{
    BackwardTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    pmxKovBhIpcUiStringsTaskProcessor processor;
    QCOMPARE(answerTo(processor, taskOf("ui_strings")),
             QStringLiteral("{\"error\":\"\",\"id\":\"7\",\"result\":\"\",\"strings\":{"
                            "\"dlall\":\"KOV htiw lla daolnwoD\",\"dlbykov\":\"\","
                            "\"dllink\":\"KOV htiw daolnwoD\","
                            "\"dlselected\":\"KOV htiw detceles daolnwoD\","
                            "\"dlvideo\":\"KOV htiw oediv daolnwoD\"},\"type\":\"ui_strings\"}"));
}

void TestTaskProcessors::keyStateAnswers()
{
    const auto key = QSharedPointer<HeldKey>::create();
    pmxKovBhIpcKeyStateTaskProcessor processor({}, key);
    const auto answer = [](const char *pressed) {
        return QStringLiteral("{\"error\":\"\",\"id\":\"7\",\"keyCode\":45,\"pressed\":%1,"
                              "\"result\":\"\",\"type\":\"key_state\"}")
            .arg(QString::fromLatin1(pressed));
    };
    // The answer samples nothing.
    key->held = true;
    QCOMPARE(answerTo(processor, taskOf("key_state")), answer("false"));
    QVERIFY(key->isPressed(true));
    QCOMPARE(answerTo(processor, taskOf("key_state")), answer("true"));
}

void TestTaskProcessors::keyStatePushes()
{
    const OutputFile output;
    auto sender = QSharedPointer<ConsoleMessagesSender>::create(nullptr, output.file());
    const auto key = QSharedPointer<HeldKey>::create();
    pmxKovBhIpcKeyStateTaskProcessor processor(sender, key);
    const auto setHeld = [&key](bool held) {
        key->held = held;
        key->update();
    };

    setHeld(true); // nobody has asked yet
    QCOMPARE(output.written(), QByteArray());
    answerTo(processor, taskOf("key_state"));
    setHeld(true); // no change
    QCOMPARE(output.written(), QByteArray());
    setHeld(false);
    const QByteArray released = frame("{\"error\":\"\",\"id\":\"\",\"keyCode\":45,"
                                      "\"pressed\":false,\"result\":\"\","
                                      "\"type\":\"key_state\"}");
    QCOMPARE(output.written(), released);
    setHeld(true);
    QCOMPARE(output.written().size(), 2 * released.size() - 1);
    QVERIFY(output.written().contains("\"pressed\":true"));

    sender.reset();
    setHeld(false);
    QCOMPARE(output.written().size(), 2 * released.size() - 1);
}

void TestTaskProcessors::browserProxy()
{
    pmxKovBhIpcBrowserProxyTaskProcessor processor;
    const auto task = taskOf("browser_proxy");
    task->browser_proxy.addr = "proxy.example";
    QCOMPARE(answerTo(processor, task),
             QStringLiteral("{\"error\":\"failure\",\"id\":\"7\",\"result\":\"\","
                            "\"type\":\"browser_proxy\"}"));
}

void TestTaskProcessors::kovJson_data()
{
    QTest::addColumn<std::string>("id");
    QTest::addColumn<qint64>("number");

    const auto row = [](const char *id, qint64 number) {
        QTest::newRow(id) << std::string(id) << number;
    };
    row("42", 42);
    row(" \t7abc", 7);
    row("+5", 5);
    row("-5", -5);
    row("0x10", 0);
    row("9223372036854775807", std::numeric_limits<qint64>::max());
    row("-9223372036854775808", std::numeric_limits<qint64>::min());
}

void TestTaskProcessors::kovJson()
{
    QFETCH(const std::string, id);
    QFETCH(const qint64, number);

    const auto requests = QSharedPointer<JsonRequests>::create();
    pmxKovBhIpcKovJsonTaskProcessor processor(requests);
    const auto task = taskOf("kov_json_task", id);
    task->json = "{\"a\":\"\xc3\xa9\"}";
    pmxKovBhIpcTaskResponse expected;
    expected.id = id;
    expected.type = "kov_json_task";
    QCOMPARE(answerTo(processor, task), pmxResponseText(expected));
    using Sent = QList<std::tuple<qint64, QString, bool>>;
    QCOMPARE(requests->sent, (Sent{{number, QStringLiteral(u"{\"a\":\"\u00e9\"}"), true}}));
}

void TestTaskProcessors::kovJsonBadId_data()
{
    QTest::addColumn<std::string>("id");
    QTest::addColumn<bool>("outOfRange");

    QTest::newRow("empty") << std::string() << false;
    QTest::newRow("letters") << std::string("abc") << false;
    QTest::newRow("sign only") << std::string("-") << false;
    QTest::newRow("above 64 bits") << std::string("9223372036854775808") << true;
    QTest::newRow("below 64 bits") << std::string("-9223372036854775809") << true;
}

void TestTaskProcessors::kovJsonBadId()
{
    QFETCH(const std::string, id);
    QFETCH(const bool, outOfRange);

    const auto requests = QSharedPointer<JsonRequests>::create();
    pmxKovBhIpcKovJsonTaskProcessor processor(requests);
    std::string thrown;
    bool wasOutOfRange = false;
    try {
        answerTo(processor, taskOf("kov_json_task", id));
    } catch (const std::invalid_argument &error) {
        thrown = error.what();
    } catch (const std::out_of_range &error) {
        thrown = error.what();
        wasOutOfRange = true;
    }
    QCOMPARE(thrown, std::string("stoll"));
    QCOMPARE(wasOutOfRange, outOfRange);
    QVERIFY(requests->sent.isEmpty());
}

QTEST_GUILESS_MAIN(TestTaskProcessors)
#include "tst_taskprocessors.moc"
