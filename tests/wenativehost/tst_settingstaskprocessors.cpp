#include "appsettings.h"
#include "consolemessagessender.h"
#include "isolatedclientmodule.h"
#include "pmxjsonserializeobject.h"
#include "pmxkovbhipcpostsettingstaskprocessor.h"
#include "pmxkovbhipcquerysettingstaskprocessor.h"
#include "pmxkovbhipcquerysettingstaskresponse.h"
#include "pmxkovbhipctask.h"
#include "pmxtaskresponses.h"
#include "webextensionsettingsmanager.h"

#include <QTest>

#include <unistd.h>

#include <cstdio>

using namespace std::string_literals;

class TestSettingsTaskProcessors : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void queryWaitsForNothing();
    void queryLoadsTheLocalSettings();
    void waitingQueriesAreAnsweredInOrder();
    void answerShowsTheRecordAsItIsWritten();
    void pushes();
    void pushWithoutSender();
    void post();
    void postWithoutOptions();

private:
    void makeProcessors();
    std::shared_ptr<pmxKovBhIpcTask> task(const char *json);
    pmxKovBhIpcTaskProcessor::Callback recorded();
    /// The messages that were sent, without their lengths; each is forgotten.
    QStringList sent();

    std::unique_ptr<IsolatedClientModule> m_client;
    QSharedPointer<WebExtensionSettingsManager> m_manager;
    std::FILE *m_output = nullptr;
    QSharedPointer<ConsoleMessagesSender> m_sender;
    std::unique_ptr<pmxKovBhIpcQuerySettingsTaskProcessor> m_query;
    std::unique_ptr<pmxKovBhIpcPostSettingsTaskProcessor> m_post;
    QStringList m_answers;
};

void TestSettingsTaskProcessors::init()
{
    m_client = std::make_unique<IsolatedClientModule>();
    m_client->bringUp();
    m_output = std::tmpfile();
    m_sender = QSharedPointer<ConsoleMessagesSender>::create(nullptr, m_output);
    m_sender->enableFlags(ConsoleMessagesSender::TextLength, true);
}

void TestSettingsTaskProcessors::cleanup()
{
    m_query.reset();
    m_post.reset();
    m_manager.reset();
    m_sender.reset();
    std::fclose(m_output);
    m_client.reset();
    m_answers.clear();
}

void TestSettingsTaskProcessors::makeProcessors()
{
    m_manager = QSharedPointer<WebExtensionSettingsManager>::create(m_client->module());
    m_query = std::make_unique<pmxKovBhIpcQuerySettingsTaskProcessor>(m_manager, m_sender);
    m_post = std::make_unique<pmxKovBhIpcPostSettingsTaskProcessor>(m_manager);
}

std::shared_ptr<pmxKovBhIpcTask> TestSettingsTaskProcessors::task(const char *json)
{
    auto read = std::make_shared<pmxKovBhIpcTask>();
    pmxJsonSerializeObject(*read, std::string(json), 0);
    return read;
}

/// Keeps "ID TYPE ERROR LOCALE" of each answer.
pmxKovBhIpcTaskProcessor::Callback TestSettingsTaskProcessors::recorded()
{
    return [this](const std::shared_ptr<pmxKovBhIpcTask> &asked,
                  const std::shared_ptr<pmxKovBhIpcTaskResponse> &response) {
        QVERIFY(response->id == asked->id);
        QString text = QString::fromStdString(response->id + " " + response->type);
        if (!response->error.empty())
            text += u" error: "_qs + QString::fromStdString(response->error);
        if (const auto query =
                std::dynamic_pointer_cast<pmxKovBhIpcQuerySettingsTaskResponse>(response))
            text += u" locale: "_qs + QString::fromStdString(query->settings->locale);
        m_answers.append(text);
    };
}

QStringList TestSettingsTaskProcessors::sent()
{
    QStringList messages;
    std::rewind(m_output);
    long length = 0;
    while (std::fscanf(m_output, "%ld ", &length) == 1) {
        QByteArray body(length, '\0');
        if (std::fread(body.data(), 1, size_t(length), m_output) != size_t(length))
            qFatal("a message was cut");
        messages.append(QString::fromUtf8(body));
    }
    std::rewind(m_output);
    if (::ftruncate(::fileno(m_output), 0) != 0)
        qFatal("the output cannot be emptied");
    return messages;
}

void TestSettingsTaskProcessors::queryWaitsForNothing()
{
    m_client->initializeSettings();
    makeProcessors();
    m_query->process(task(R"({"id":"1","type":"query_settings x"})"), recorded());
    QCOMPARE(m_answers, QStringList(u"1 query_settings x locale: "_qs));
}

void TestSettingsTaskProcessors::queryLoadsTheLocalSettings()
{
    makeProcessors();
    m_query->process(task(R"({"id":"1","type":"query_settings"})"), recorded());
    QCOMPARE(m_answers, QStringList(u"1 query_settings locale: "_qs));
    QVERIFY(m_client->module()->settingsInitializer()->isSettingsInitialized());
    QVERIFY(!m_manager->settings().browser.monitor.skipExtensions.empty());
}

void TestSettingsTaskProcessors::waitingQueriesAreAnsweredInOrder()
{
    // The application's settings become known, and before the manager hears of it, queries arrive.
    connect(m_client->module()->settingsInitializer().data(),
            &AppClientSettingsInitializer::settingsInitialized, this, [this] {
                for (const char *json : {R"({"id":"b","type":"query_settings"})",
                                         R"({"id":"c","type":"query_settings"})",
                                         R"({"id":"a","type":"query_settings"})"})
                    m_query->process(task(json), recorded());
                QVERIFY(m_answers.isEmpty());
            });
    makeProcessors();
    m_client->initializeSettings();
    QCOMPARE(m_answers,
             QStringList({u"b query_settings locale: "_qs, u"c query_settings locale: "_qs,
                          u"a query_settings locale: "_qs}));
}

void TestSettingsTaskProcessors::answerShowsTheRecordAsItIsWritten()
{
    m_client->initializeSettings();
    makeProcessors();
    std::shared_ptr<pmxKovBhIpcTaskResponse> answer;
    m_query->process(task(R"({"id":"1","type":"query_settings"})"),
                     [&answer](const auto &, const auto &response) { answer = response; });
    WebExtensionSettings settings;
    settings.locale = "later";
    m_manager->setSettings(settings, true);
    // The answer keeps alive what it shows.
    m_query.reset();
    m_post.reset();
    m_manager.reset();
    QVERIFY(pmxResponseText(*answer)->contains(u"\"locale\":\"later\""_qs));
}

void TestSettingsTaskProcessors::pushes()
{
    const QString intercept = toString(AppSettings::WbInterceptDownloads);
    m_client->initializeSettings();
    makeProcessors();
    m_client->settings().setValue(intercept, u"1"_qs);
    QCOMPARE(sent(), QStringList());

    m_query->process(task(R"({"id":"1","type":"query_settings"})"), recorded());
    m_client->settings().setValue(toString(AppSettings::LocaleName), u"de"_qs);
    QCOMPARE(sent(), QStringList());
    m_client->settings().setValue(intercept, u"0"_qs);
    QCOMPARE(sent(),
             QStringList(
                 u"{\"error\":\"\",\"id\":\"\",\"result\":\"\",\"settings\":{\"browser\":{\"menu\":"
                 "{\"dlYtChannel\":true,\"dlall\":true,\"dllink\":true,\"dlpage\":false,"
                 "\"dlselected\":true,\"dlvideo\":true},\"monitor\":{\"allowDownload\":false,"
                 "\"enable\":false,\"skipExtensions\":\"\",\"skipIfKeyPressed\":false,"
                 "\"skipServers\":\"\",\"skipServersEnabled\":false,\"skipSmallerThan\":\"0\","
                 "\"video\":{\"enable\":false,\"enableSnifferDll\":false,\"showButton\":true}}},"
                 "\"locale\":\"\"},\"type\":\"query_settings\"}"_qs));

    // Its own change is not told to the extension.
    m_post->process(task(R"({"id":"2","type":"post_settings","post_settings":{"locale":"de"}})"),
                    recorded());
    QCOMPARE(sent(), QStringList());
    m_client->settings().setValue(intercept, u"0"_qs);
    QCOMPARE(sent().size(), 1);
    QCOMPARE(m_answers.size(), 2);
}

void TestSettingsTaskProcessors::pushWithoutSender()
{
    m_client->initializeSettings();
    makeProcessors();
    m_query->process(task(R"({"id":"1","type":"query_settings"})"), recorded());
    m_sender.reset();
    m_client->settings().setValue(toString(AppSettings::WbInterceptDownloads), u"1"_qs);
    QCOMPARE(sent(), QStringList());
}

void TestSettingsTaskProcessors::post()
{
    m_client->initializeSettings();
    makeProcessors();
    m_post->process(
        task(R"({"id":"1","type":"post_settings","post_settings":{"locale":"de","browser":)"
             R"({"monitor":{"enable":false,"skipExtensions":"pls"}}}})"),
        recorded());
    QCOMPARE(m_answers, QStringList(u"1 post_settings"_qs));
    QCOMPARE(m_manager->settings().locale, "de"s);
    const auto value = [this](AppSettings::Setting setting) {
        return m_client->settings().value(toString(setting));
    };
    QCOMPARE(value(AppSettings::WbInterceptDownloads), u"0"_qs);
    QCOMPARE(value(AppSettings::WbDownloadsUnwantedExtensionsList), u"pls"_qs);
}

void TestSettingsTaskProcessors::postWithoutOptions()
{
    m_client->initializeSettings();
    makeProcessors();
    WebExtensionSettings settings;
    settings.locale = "de";
    m_manager->setSettings(settings, true);
    m_post->process(task(R"({"id":"1","type":"post_settings"})"), recorded());
    QCOMPARE(m_answers, QStringList(u"1 post_settings error: invalid arguments"_qs));
    QCOMPARE(m_manager->settings().locale, "de"s);
}

QTEST_GUILESS_MAIN(TestSettingsTaskProcessors)
#include "tst_settingstaskprocessors.moc"
