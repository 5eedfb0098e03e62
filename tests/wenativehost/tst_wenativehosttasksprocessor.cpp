#include "consolemessagesreceiver.h"
#include "consolemessagessender.h"
#include "frames.h"
#include "isolatedclientmodule.h"
#include "logcapture.h"
#include "outputfile.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipctaskresponse.h"
#include "qtappdelayedshutdownmanager.h"
#include "readconsolethread.h"
#include "webextensionsettingsmanager.h"
#include "wenativehosttasksprocessor.h"

#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

#include <memory>
#include <stdexcept>

class TestWeNativeHostTasksProcessor : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void dispatch_data();
    void dispatch();
    void unreadable_data();
    void unreadable();
    void answersInOrderOfArrival();
    void processIsVirtual();
    void responseThatCannotBeWritten();
    void shutdown();
    void shutdownDestroysTheDispatcher();
    void wrongTypeOfSubRecord_data();
    void wrongTypeOfSubRecord();
    void badIdOfJsonTask();
    void senderGone();
    void encodingsOfAHandshakeHoldAtOnce();

private:
    void makeDispatcher();

    std::unique_ptr<IsolatedClientModule> m_client;
    std::unique_ptr<OutputFile> m_output;
    QSharedPointer<QtAppDelayedShutdownManager> m_shutdownManager;
    QSharedPointer<ConsoleMessagesSender> m_sender;
    QSharedPointer<ConsoleMessagesReceiver> m_receiver;
    std::unique_ptr<WeNativeHostTasksProcessor> m_dispatcher;
};

namespace {

/// A plain answer, framed.
QByteArray answer(const QByteArray &id, const QByteArray &type, const QByteArray &error)
{
    return frame("{\"error\":\"" + error + "\",\"id\":\"" + id + "\",\"result\":\"\",\"type\":\""
                 + type + "\"}");
}

QString unreadableLine()
{
    return QStringLiteral("ASSERTION FAILED: pmxJsonSerializeObject(*task, msg.toStdString()), "
                          "../../src/wenativehost/wenativehosttasksprocessor,136");
}

} // namespace

void TestWeNativeHostTasksProcessor::init()
{
    m_client = std::make_unique<IsolatedClientModule>();
    m_client->bringUp();
    m_output = std::make_unique<OutputFile>();
    m_shutdownManager = QSharedPointer<QtAppDelayedShutdownManager>::create();
    // Nothing is to end the event loops of these tests.
    m_shutdownManager->registerObject(this, true);
    m_sender = QSharedPointer<ConsoleMessagesSender>::create(nullptr, m_output->file());
    m_receiver = QSharedPointer<ConsoleMessagesReceiver>::create();
    makeDispatcher();
}

void TestWeNativeHostTasksProcessor::makeDispatcher()
{
    m_dispatcher = std::make_unique<WeNativeHostTasksProcessor>(
        m_shutdownManager, m_receiver, m_sender,
        QSharedPointer<WebExtensionSettingsManager>::create(m_client->module()),
        m_client->module());
}

void TestWeNativeHostTasksProcessor::cleanup()
{
    m_dispatcher.reset();
    m_receiver.reset();
    m_sender.reset();
    m_shutdownManager.reset();
    m_output.reset();
    m_client.reset();
}

void TestWeNativeHostTasksProcessor::dispatch_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("browser_proxy")
        << QStringLiteral("{\"id\":\"1\",\"type\":\"browser_proxy\",\"browser_proxy\":{}}")
        << answer("1", "browser_proxy", "failure");
    QTest::newRow("kov_json_task")
        << QStringLiteral("{\"id\":\"42\",\"type\":\"kov_json_task\",\"json\":\"{}\"}")
        << answer("42", "kov_json_task", "");
    QTest::newRow("post_settings")
        << QStringLiteral("{\"id\":\"2\",\"type\":\"post_settings\",\"post_settings\":"
                          "{\"browser\":{\"menu\":{},\"monitor\":{\"video\":{}}}}}")
        << answer("2", "post_settings", "");
    QTest::newRow("window") << QStringLiteral(
        "{\"id\":\"3\",\"type\":\"window\",\"window\":{\"action\":\"show\"}}")
                            << answer("3", "window", "unknown_task_type");
    QTest::newRow("unknown type") << QStringLiteral("{\"id\":\"4\",\"type\":\"toast\"}")
                                  << answer("4", "toast", "unknown_task_type");
    QTest::newRow("other letter case")
        << QStringLiteral("{\"id\":\"5\",\"type\":\"Browser_proxy\",\"Browser_proxy\":{}}")
        << answer("5", "Browser_proxy", "unknown_task_type");
    QTest::newRow("more words than the type")
        << QStringLiteral("{\"id\":\"6\",\"type\":\" browser_proxy \\u00e9\",\"browser_proxy\":{}}")
        << answer("6", " browser_proxy \xc3\xa9", "failure");
}

void TestWeNativeHostTasksProcessor::dispatch()
{
    QFETCH(const QString, message);
    QFETCH(const QByteArray, bytes);
    const LogCapture log;
    m_dispatcher->onConsoleGotMessage(message);
    QCOMPARE(m_output->written(), bytes);
    QVERIFY(!log.texts().contains(unreadableLine()));
}

void TestWeNativeHostTasksProcessor::unreadable_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QByteArray>("begin");

    QTest::newRow("empty") << QString() << answer("", "", "unknown_task_type");
    QTest::newRow("not JSON") << QStringLiteral("hello") << answer("", "", "unknown_task_type");
    QTest::newRow("a list") << QStringLiteral("[1]") << answer("", "", "unknown_task_type");
    QTest::newRow("cut") << QStringLiteral("{\"id\":\"1\",\"type\":\"ui_strings\"")
                         << answer("", "", "unknown_task_type");
    QTest::newRow("without id") << QStringLiteral("{\"type\":\"browser_proxy\"}")
                                << answer("", "", "unknown_task_type");
    QTest::newRow("without type") << QStringLiteral("{\"id\":\"1\"}")
                                  << answer("1", "", "unknown_task_type");
    QTest::newRow("without the sub-record")
        << QStringLiteral("{\"id\":\"1\",\"type\":\"browser_proxy\"}")
        << answer("1", "browser_proxy", "failure");
    QTest::newRow("handshake without its sub-record")
        << QStringLiteral("{\"id\":\"1\",\"type\":\"handshake\"}")
        << frame("{\"bt\":true,\"error\":\"\",\"id\":\"1\",\"result\":\"\",\"type\":\"handshake\","
                 "\"version\":\"6.25.0.6016\",\"yt\":false}");
}

void TestWeNativeHostTasksProcessor::unreadable()
{
    QFETCH(const QString, message);
    QFETCH(const QByteArray, begin);
    const LogCapture log;
    m_dispatcher->onConsoleGotMessage(message);
    QCOMPARE(m_output->written(), begin);
    QCOMPARE(log.texts(), QStringList(unreadableLine()));
}

void TestWeNativeHostTasksProcessor::answersInOrderOfArrival()
{
    QByteArray expected;
    for (int i = 0; i < 200; ++i) {
        const QByteArray id = QByteArray::number(i);
        Q_EMIT m_receiver->gotMessage(QStringLiteral("{\"id\":\"%1\",\"type\":\"x\"}").arg(i));
        expected += answer(id, "x", "unknown_task_type");
    }
    QCOMPARE(m_output->written(), expected);
}

void TestWeNativeHostTasksProcessor::processIsVirtual()
{
    // What a message becomes goes through process(), which a derived dispatcher may take over.
    class Late : public WeNativeHostTasksProcessor {
    public:
        using WeNativeHostTasksProcessor::WeNativeHostTasksProcessor;
        void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override
        {
            taken = task;
            answerLater = callback;
        }
        std::shared_ptr<pmxKovBhIpcTask> taken;
        Callback answerLater;
    };
    Late late(m_shutdownManager, m_receiver, m_sender,
              QSharedPointer<WebExtensionSettingsManager>::create(m_client->module()),
              m_client->module());
    late.onConsoleGotMessage(QStringLiteral("{\"id\":\"9\",\"type\":\"shutdown\"}"));
    QVERIFY(late.taken);
    QCOMPARE(late.taken->id, std::string("9"));
    QCOMPARE(m_output->written(), QByteArray());

    const auto response = std::make_shared<pmxKovBhIpcTaskResponse>();
    response->id = late.taken->id;
    late.answerLater(late.taken, response);
    QCOMPARE(m_output->written(), answer("9", "", ""));
}

void TestWeNativeHostTasksProcessor::responseThatCannotBeWritten()
{
    class Broken : public pmxKovBhIpcTaskResponse {
    public:
        bool Serialize(pmxSerializationIoStream *, unsigned int) override { return false; }
    };
    class Dispatcher : public WeNativeHostTasksProcessor {
    public:
        using WeNativeHostTasksProcessor::WeNativeHostTasksProcessor;
        void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override
        {
            callback(task, std::make_shared<Broken>());
        }
    };
    Dispatcher dispatcher(m_shutdownManager, m_receiver, m_sender,
                          QSharedPointer<WebExtensionSettingsManager>::create(m_client->module()),
                          m_client->module());
    dispatcher.onConsoleGotMessage(QStringLiteral("{\"id\":\"1\",\"type\":\"x\"}"));
    QCOMPARE(m_output->written(), frame(""));
}

void TestWeNativeHostTasksProcessor::shutdown()
{
    QSignalSpy requested(m_shutdownManager.data(), &QtAppDelayedShutdownManager::shutdownRequested);
    m_dispatcher->onConsoleGotMessage(QStringLiteral("{\"id\":\"1\",\"type\":\"shutdown now\"}"));
    QCOMPARE(requested.size(), 1);
    QCOMPARE(m_shutdownManager->shutdownReason(), QString());
    QCOMPARE(m_output->written(), QByteArray());
}

void TestWeNativeHostTasksProcessor::shutdownDestroysTheDispatcher()
{
    // As the take-down does: from inside the dispatcher's own slot, with messages behind it.
    connect(m_shutdownManager.data(), &QtAppDelayedShutdownManager::shutdownRequested, this,
            [this] { m_dispatcher.reset(); });
    const QStringList messages = {QStringLiteral("{\"id\":\"1\",\"type\":\"shutdown\"}"),
                                  QStringLiteral("{\"id\":\"2\",\"type\":\"x\"}")};
    for (const QString &message : messages)
        QMetaObject::invokeMethod(m_dispatcher.get(), "onConsoleGotMessage", Qt::QueuedConnection,
                                  Q_ARG(QString, message));
    QCoreApplication::processEvents();
    QVERIFY(!m_dispatcher);
    QCOMPARE(m_output->written(), QByteArray());
}

void TestWeNativeHostTasksProcessor::wrongTypeOfSubRecord_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("create_downloads, a text") << QStringLiteral(
        "{\"id\":\"1\",\"type\":\"create_downloads\",\"create_downloads\":\"x\"}");
    QTest::newRow("create_downloads, a list")
        << QStringLiteral("{\"id\":\"1\",\"type\":\"create_downloads\",\"create_downloads\":[]}");
    QTest::newRow("post_settings, a number")
        << QStringLiteral("{\"id\":\"1\",\"type\":\"post_settings\",\"post_settings\":1}");
}

void TestWeNativeHostTasksProcessor::wrongTypeOfSubRecord()
{
    QFETCH(const QString, message);
    std::string thrown;
    try {
        m_dispatcher->onConsoleGotMessage(message);
    } catch (const std::runtime_error &error) {
        thrown = error.what();
    }
    QCOMPARE(thrown,
             std::string("\"type mismatch! call is<type>() before get<type>()\" && is<object>()"));
    QCOMPARE(m_output->written(), QByteArray());
}

void TestWeNativeHostTasksProcessor::badIdOfJsonTask()
{
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                             m_dispatcher->onConsoleGotMessage(QStringLiteral(
                                 "{\"id\":\"x\",\"type\":\"kov_json_task\",\"json\":\"{}\"}")));
    QCOMPARE(m_output->written(), QByteArray());
}

void TestWeNativeHostTasksProcessor::senderGone()
{
    m_sender.reset();
    m_dispatcher->onConsoleGotMessage(QStringLiteral("{\"id\":\"1\",\"type\":\"x\"}"));
    QCOMPARE(m_output->written(), QByteArray());
}

void TestWeNativeHostTasksProcessor::encodingsOfAHandshakeHoldAtOnce()
{
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> input(::fdopen(ends[0], "r"),
                                                                   &std::fclose);
    const auto write = [&ends](const QByteArray &bytes) {
        QCOMPARE(::write(ends[1], bytes.constData(), static_cast<size_t>(bytes.size())),
                 static_cast<ssize_t>(bytes.size()));
    };
    m_receiver = QSharedPointer<ConsoleMessagesReceiver>::create(nullptr, input.get());
    makeDispatcher();
    ReadConsoleThread thread;
    thread.start();
    m_receiver->moveToThread(&thread);
    m_receiver->start();

    write(frame("{\"id\":\"1\",\"type\":\"handshake\",\"handshake\":{"
                "\"response_send_data_len_as_string\":\"1\",\"base64_encoding_for_rcv\":\"1\","
                "\"uri_encoding_for_send\":\"1\"}}"));
    QTRY_VERIFY(m_output->written().endsWith("%3Afalse%7D"));
    QVERIFY(m_output->written().startsWith("181 %7B%22bt%22%3Atrue"));
    const qsizetype answered = m_output->written().size();

    // {"id":"2","type":"x"}
    write(frame("eyJpZCI6IjIiLCJ0eXBlIjoieCJ9\r\n"));
    QTRY_COMPARE(m_output->written().mid(answered),
                 QByteArray("115 %7B%22error%22%3A%22unknown%5Ftask%5Ftype%22%2C%22id%22%3A%222%22"
                            "%2C%22result%22%3A%22%22%2C%22type%22%3A%22x%22%7D"));
    thread.stop();
    ::close(ends[1]);
}

QTEST_GUILESS_MAIN(TestWeNativeHostTasksProcessor)
#include "tst_wenativehosttasksprocessor.moc"
