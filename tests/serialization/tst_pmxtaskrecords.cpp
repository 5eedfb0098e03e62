#include "pmxjsonserializeobject.h"
#include "pmxkovbhipchandshaketaskresponse.h"
#include "pmxkovbhipckeystatetaskresponse.h"
#include "pmxkovbhipcquerysettingstaskresponse.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipcuistringstaskresponse.h"
#include "pmxkovbhipcvideosniffertaskresponse.h"

#include <QTest>

#include <sstream>
#include <stdexcept>

using namespace std::string_literals;

namespace {

template <typename Record> Record read(const char *json)
{
    Record record;
    if (!pmxJsonSerializeObject(record, std::string(json), 0))
        qFatal("the test's own record cannot be read");
    return record;
}

std::string written(pmxSerializable &record)
{
    std::ostringstream out;
    return pmxJsonSerializeObject(record, out, 0) ? out.str() : "failed"s;
}

} // namespace

class TestPmxTaskRecords : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void typeNames_data();
    void typeNames();
    void typeOfText_data();
    void typeOfText();
    void completeTasks_data();
    void completeTasks();
    void forgivenTasks_data();
    void forgivenTasks();
    void failedTasks_data();
    void failedTasks();
    void thrownTasks_data();
    void thrownTasks();
    void memberOfEachKey();
    void failedDownloadKeepsTheEarlierOnes();
    void responses_data();
    void responses();
    void responseNeedsItsMembers_data();
    void responseNeedsItsMembers();
    void settingsAnswerFollowsTheRecord();
    void settingsEquality_data();
    void settingsEquality();
};

void TestPmxTaskRecords::typeNames_data()
{
    QTest::addColumn<int>("value");
    const char *const names[] = {"",
                                 "handshake",
                                 "ui_strings",
                                 "create_downloads",
                                 "shutdown",
                                 "query_settings",
                                 "browser_proxy",
                                 "window",
                                 "video_sniffer",
                                 "network_request_notification",
                                 "browser_download_state_report",
                                 "post_settings",
                                 "kov_json_task",
                                 "key_state",
                                 ""};
    int value = 0;
    for (const char *name : names)
        QTest::addRow("%s", name) << value++;
}

void TestPmxTaskRecords::typeNames()
{
    QFETCH(int, value);
    const std::string name = QTest::currentDataTag();
    QCOMPARE(kovIpcTaskTypeName(static_cast<kov_ipc_task_type>(value)), name);
    pmxKovBhIpcTask task;
    task.type = name;
    QCOMPARE(int(task.get_type()), name.empty() ? 0 : value);
}

void TestPmxTaskRecords::typeOfText_data()
{
    QTest::addColumn<std::string>("type");
    QTest::addColumn<int>("value");
    QTest::newRow("other case") << "Handshake"s << 0;
    QTest::newRow("blank and more") << "handshake please"s << 1;
    QTest::newRow("leading blanks") << " \t\r\nwindow"s << 7;
    QTest::newRow("more without a blank") << "handshakes"s << 0;
    QTest::newRow("only blanks") << "  "s << 0;
    QTest::newRow("number") << "1"s << 0;
    QTest::newRow("zero byte") << "window\0"s << 0;
}

void TestPmxTaskRecords::typeOfText()
{
    QFETCH(std::string, type);
    QFETCH(int, value);
    pmxKovBhIpcTask task;
    task.type = type;
    QCOMPARE(int(task.get_type()), value);
}

/// Tasks with every member: what is read and written again is the same text.
void TestPmxTaskRecords::completeTasks_data()
{
    for (const char *text : {
             R"({"id":"1","type":"ui_strings"})",
             R"({"id":"","type":"shutdown"})",
             R"({"id":"1","type":"query_settings"})",
             R"({"id":"1","type":"key_state"})",
             R"({"id":"1","type":"made_up"})",
             R"({"id":"1","json":"{\"a\":[1]}","type":"kov_json_task"})",
             R"({"handshake":{"api_version":"4294967295","base64_encoding_for_rcv":"0",)"
             R"("base64_encoding_for_send":"1","browser":"b","response_add_crlf":"1",)"
             R"("response_send_data_len_as_string":"0","uri_encoding_for_rcv":"1",)"
             R"("uri_encoding_for_send":"0"},"id":"1","type":"handshake and more"})",
             R"({"create_downloads":{"catchedDownloads":"1","downloads":{"item":[)"
             R"({"documentUrl":"d","fileSize":"18446744073709551615","httpCookies":"c",)"
             R"("httpPostData":"p","httpReferer":"r","originalUrl":"o","suggestedName":"s",)"
             R"("url":"u","userAgent":"a"}]},"ignoreSettings":"0","waitResponse":"1"},)"
             R"("id":"1","type":"create_downloads"})",
             R"({"browser_proxy":{"addr":"a","port":"8080","protocol":"http","type":"2"},)"
             R"("id":"1","type":"browser_proxy"})",
             R"({"id":"1","type":"window","window":{"action":"hide","needWait":"1",)"
             R"("windowHandle":"h"}})",
             R"({"id":"1","type":"video_sniffer","video_sniffer":{"flashVars":"fv",)"
             R"("frameUrl":"f","name":"n","otherFlashVars":"of","otherSwfUrls":"os",)"
             R"("requestHeaders":"q","requestId":"i","responseHeaders":"p","srcTabUrl":"t",)"
             R"("swfUrl":"s","url":"u","webPageUrl":"w"}})",
             R"({"id":"1","network_request_notification":{"data":"d","requestHeaders":"q",)"
             R"("requestId":"i","responseHeaders":"p","srcTabUrl":"t","type":"y","url":"u"},)"
             R"("type":"network_request_notification"})",
             R"({"browser_download_state_report":{"state":"s","url":"u"},"id":"1",)"
             R"("type":"browser_download_state_report"})",
             R"({"id":"1","post_settings":{"browser":{"menu":{"dlYtChannel":false,)"
             R"("dlall":false,"dllink":true,"dlpage":true,"dlselected":false,"dlvideo":true},)"
             R"("monitor":{"allowDownload":false,"enable":true,"skipExtensions":"pls m3u",)"
             R"("skipIfKeyPressed":true,"skipServers":"example.org",)"
             R"("skipServersEnabled":true,"skipSmallerThan":"-9223372036854775808","video":)"
             R"({"enable":true,"enableSnifferDll":true,"showButton":false}}},"locale":"de"},)"
             R"("type":"post_settings"})",
         }) {
        QTest::addColumn<std::string>("text");
        QTest::newRow(text) << std::string(text);
    }
}

void TestPmxTaskRecords::completeTasks()
{
    QFETCH(std::string, text);
    pmxKovBhIpcTask task;
    QVERIFY(pmxJsonSerializeObject(task, text, 0));
    QCOMPARE(written(task), text);
}

void TestPmxTaskRecords::forgivenTasks_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::string>("rewritten");

    QTest::newRow("handshake with wrong members")
        << R"({"type":"handshake","id":"1","handshake":{"response_add_crlf":"yes",)"
           R"("uri_encoding_for_rcv":true,"uri_encoding_for_send":"1","api_version":3,)"
           R"("browser":{}}})"s
        << R"({"handshake":{"api_version":"0","base64_encoding_for_rcv":"0",)"
           R"("base64_encoding_for_send":"0","browser":"","response_add_crlf":"0",)"
           R"("response_send_data_len_as_string":"0","uri_encoding_for_rcv":"0",)"
           R"("uri_encoding_for_send":"1"},"id":"1","type":"handshake"})"s;
    QTest::newRow("handshake that is no object")
        << R"({"type":"handshake","id":"1","handshake":"1"})"s
        << R"({"handshake":{"api_version":"0","base64_encoding_for_rcv":"0",)"
           R"("base64_encoding_for_send":"0","browser":"","response_add_crlf":"0",)"
           R"("response_send_data_len_as_string":"0","uri_encoding_for_rcv":"0",)"
           R"("uri_encoding_for_send":"0"},"id":"1","type":"handshake"})"s;
    QTest::newRow("download with only its URL, given alone, unknown size")
        << R"({"type":"create_downloads","id":"1","create_downloads":{"downloads":)"
           R"({"item":{"url":"u","fileSize":"-1","userAgent":5}}}})"s
        << R"({"create_downloads":{"catchedDownloads":"0","downloads":{"item":[)"
           R"({"documentUrl":"","fileSize":"18446744073709551615","httpCookies":"",)"
           R"("httpPostData":"","httpReferer":"","originalUrl":"","suggestedName":"",)"
           R"("url":"u","userAgent":""}]},"ignoreSettings":"0","waitResponse":"0"},)"
           R"("id":"1","type":"create_downloads"})"s;
    QTest::newRow("no downloads")
        << R"({"type":"create_downloads","id":"1","create_downloads":{"ignoreSettings":"1"}})"s
        << R"({"create_downloads":{"catchedDownloads":"0","downloads":{},)"
           R"("ignoreSettings":"1","waitResponse":"0"},"id":"1","type":"create_downloads"})"s;
    QTest::newRow("downloads that are a text")
        << R"({"type":"create_downloads","id":"1","create_downloads":{"downloads":"x"}})"s
        << R"({"create_downloads":{"catchedDownloads":"0","downloads":{},)"
           R"("ignoreSettings":"0","waitResponse":"0"},"id":"1","type":"create_downloads"})"s;
    QTest::newRow("unknown window action")
        << R"({"type":"window","id":"1","window":{"action":"close","windowHandle":"h"}})"s
        << R"({"id":"1","type":"window","window":{"action":"show","needWait":"0",)"
           R"("windowHandle":"h"}})"s;
    QTest::newRow("settings left out keep their defaults")
        << R"({"type":"post_settings","id":"1","post_settings":{"browser":{"monitor":)"
           R"({"enable":false,"skipSmallerThan":5,"allowDownload":"0"}}}})"s
        << R"({"id":"1","post_settings":{"browser":{"menu":{"dlYtChannel":true,"dlall":true,)"
           R"("dllink":true,"dlpage":false,"dlselected":true,"dlvideo":true},"monitor":)"
           R"({"allowDownload":true,"enable":false,"skipExtensions":"",)"
           R"("skipIfKeyPressed":false,"skipServers":"","skipServersEnabled":false,)"
           R"("skipSmallerThan":"0","video":{"enable":false,"enableSnifferDll":false,)"
           R"("showButton":true}}},"locale":""},"type":"post_settings"})"s;
    QTest::newRow("members of other types are not read")
        << R"({"type":"shutdown","id":"1","json":"j","handshake":{"browser":"b"}})"s
        << R"({"id":"1","type":"shutdown"})"s;
}

void TestPmxTaskRecords::forgivenTasks()
{
    QFETCH(std::string, text);
    QFETCH(std::string, rewritten);
    pmxKovBhIpcTask task;
    QVERIFY(pmxJsonSerializeObject(task, text, 0));
    QCOMPARE(written(task), rewritten);
}

void TestPmxTaskRecords::failedTasks_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::string>("id");
    QTest::addColumn<std::string>("type");

    QTest::newRow("no JSON") << "hello"s
                             << ""s
                             << ""s;
    QTest::newRow("text") << R"("id")"s
                          << ""s
                          << ""s;
    QTest::newRow("list") << R"([{"id":"1","type":"shutdown"}])"s
                          << ""s
                          << ""s;
    QTest::newRow("no id") << R"({"type":"shutdown"})"s
                           << ""s
                           << ""s;
    QTest::newRow("id is a number") << R"({"id":1,"type":"shutdown"})"s
                                    << ""s
                                    << ""s;
    QTest::newRow("no type") << R"({"id":"1"})"s
                             << "1"s
                             << ""s;
    QTest::newRow("type is null") << R"({"id":"1","type":null})"s
                                  << "1"s
                                  << ""s;
    for (const char *type : {"handshake", "create_downloads", "browser_proxy", "window",
                             "video_sniffer", "network_request_notification",
                             "browser_download_state_report", "post_settings", "kov_json_task"}) {
        QTest::addRow("%s without its member", type) << R"({"id":"1","type":")"s + type + "\"}"
                                                     << "1"s << std::string(type);
    }
    QTest::newRow("member named after the whole type text")
        << R"({"id":"1","type":"window x","window x":{}})"s
        << "1"s
        << "window x"s;
    QTest::newRow("json is an object") << R"({"id":"1","type":"kov_json_task","json":{}})"s
                                       << "1"s
                                       << "kov_json_task"s;
    QTest::newRow("download without its URL")
        << R"({"id":"1","type":"create_downloads","create_downloads":{"downloads":)"
           R"({"item":[{"httpCookies":"c"}]}}})"s
        << "1"s
        << "create_downloads"s;
}

void TestPmxTaskRecords::failedTasks()
{
    QFETCH(std::string, text);
    QFETCH(std::string, id);
    QFETCH(std::string, type);
    pmxKovBhIpcTask task;
    QVERIFY(!pmxJsonSerializeObject(task, text, 0));
    // Nothing at all was read of what is no JSON.
    QCOMPARE(task.readFailed(), text != "hello");
    QCOMPARE(task.id, id);
    QCOMPARE(task.type, type);
}

void TestPmxTaskRecords::thrownTasks_data()
{
    QTest::addColumn<std::string>("text");
    for (const char *member : {"\"x\"", "5", "[]", "null", "true"}) {
        for (const char *type : {"create_downloads", "post_settings"}) {
            QTest::addRow("%s is %s", type, member)
                << R"({"id":"1","type":")"s + type + "\",\"" + type + "\":" + member + "}";
        }
    }
    QTest::newRow("browser settings are a text")
        << R"({"id":"1","type":"post_settings","post_settings":{"browser":"x"}})"s;
    QTest::newRow("monitor settings are a list")
        << R"({"id":"1","type":"post_settings","post_settings":{"browser":{"monitor":[]}}})"s;
}

void TestPmxTaskRecords::thrownTasks()
{
    QFETCH(std::string, text);
    pmxKovBhIpcTask task;
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, pmxJsonSerializeObject(task, text, 0));
    QCOMPARE(task.id, "1"s);
}

/// That the keys name the right members; the texts alone would not show two members swapped.
void TestPmxTaskRecords::memberOfEachKey()
{
    const auto flags = read<pmxKovBhIpcTaskHandshake>(
        R"({"response_send_data_len_as_string":"1","uri_encoding_for_rcv":"1",)"
        R"("base64_encoding_for_send":"1","api_version":"3"})");
    QVERIFY(!flags.response_add_crlf && flags.response_send_data_len_as_string);
    QVERIFY(flags.uri_encoding_for_rcv && !flags.uri_encoding_for_send);
    QVERIFY(!flags.base64_encoding_for_rcv && flags.base64_encoding_for_send);
    QCOMPARE(flags.api_version, 3U);

    const auto created = read<pmxKovBhIpcTaskCreateDownloads>(
        R"({"downloads":{"item":[{"url":"u","documentUrl":"d","httpReferer":"r",)"
        R"("originalUrl":"o"}]},"ignoreSettings":"1"})");
    QVERIFY(!created.catchedDownloads && !created.waitResponse && created.ignoreSettings);
    const pmxKovBhIpcDownloadInfo &info = *created.downloads.front();
    QCOMPARE(info.url + info.documentUrl + info.httpReferer + info.originalUrl, "udro"s);
    QCOMPARE(info.fileSize, 0U);

    const auto settings = read<WebExtensionSettings>(
        R"({"browser":{"menu":{"dlpage":true},"monitor":{"skipServers":"s",)"
        R"("skipExtensions":"e","skipIfKeyPressed":true,"video":{"enable":true}}},)"
        R"("locale":"l"})");
    QVERIFY(settings.browser.menu.dlpage && settings.browser.monitor.video.enable);
    QVERIFY(settings.browser.monitor.skipIfKeyPressed);
    QVERIFY(!settings.browser.monitor.skipServersEnabled);
    QCOMPARE(settings.browser.monitor.skipServers + settings.browser.monitor.skipExtensions
                 + settings.locale,
             "sel"s);
}

void TestPmxTaskRecords::failedDownloadKeepsTheEarlierOnes()
{
    pmxKovBhIpcTask task;
    QVERIFY(!pmxJsonSerializeObject(
        task,
        R"({"id":"1","type":"create_downloads","create_downloads":{"catchedDownloads":"1",)"
        R"("downloads":{"item":[{"url":"a"},{"url":5},{"url":"c"}]}}})"s,
        0));
    QCOMPARE(task.create_downloads.downloads.size(), std::size_t(1));
    QCOMPARE(task.create_downloads.downloads.front()->url, "a"s);
    QVERIFY(!task.create_downloads.catchedDownloads);
}

void TestPmxTaskRecords::responses_data()
{
    QTest::addColumn<std::shared_ptr<pmxKovBhIpcTaskResponse>>("response");
    QTest::addColumn<std::string>("text");
    const auto row = [](auto response, const char *text) {
        response->id = "7";
        response->type = "t";
        QTest::newRow(text) << std::shared_ptr<pmxKovBhIpcTaskResponse>(response)
                            << std::string(text);
    };

    const auto plain = std::make_shared<pmxKovBhIpcTaskResponse>();
    plain->result = "1";
    plain->error = "e";
    row(plain, R"({"error":"e","id":"7","result":"1","type":"t"})");
    const auto handshake = std::make_shared<pmxKovBhIpcHandshakeTaskResponse>();
    handshake->version = "6.25.0.6016";
    row(handshake,
        R"({"bt":true,"error":"","id":"7","result":"","type":"t","version":"6.25.0.6016",)"
        R"("yt":false})");
    const auto strings = std::make_shared<pmxKovBhIpcUiStringsTaskResponse>();
    strings->dllink = "a";
    strings->dlall = "b";
    strings->dlselected = "c";
    strings->dlvideo = "d";
    row(strings,
        R"({"error":"","id":"7","result":"","strings":{"dlall":"b","dlbykov":"","dllink":"a",)"
        R"("dlselected":"c","dlvideo":"d"},"type":"t"})");
    row(std::make_shared<pmxKovBhIpcQuerySettingsTaskResponse>(),
        R"({"error":"","id":"7","result":"","settings":{"browser":{"menu":)"
        R"({"dlYtChannel":true,"dlall":true,"dllink":true,"dlpage":false,"dlselected":true,)"
        R"("dlvideo":true},"monitor":{"allowDownload":true,"enable":true,)"
        R"("skipExtensions":"","skipIfKeyPressed":false,"skipServers":"",)"
        R"("skipServersEnabled":false,"skipSmallerThan":"0","video":{"enable":false,)"
        R"("enableSnifferDll":false,"showButton":true}}},"locale":""},"type":"t"})");
    const auto key = std::make_shared<pmxKovBhIpcKeyStateTaskResponse>();
    key->keyCode = 45;
    row(key, R"({"error":"","id":"7","keyCode":45,"pressed":false,"result":"","type":"t"})");
    const auto video = std::make_shared<pmxKovBhIpcVideoSnifferTaskResponse>();
    video->result = "0";
    video->videoSniffer.result = "1";
    video->videoSniffer.error2 = "x";
    row(video,
        R"({"error":"","id":"7","result":"0","type":"t",)"
        R"("videoSniffer":{"error":"","error2":"x","result":"1"}})");
}

void TestPmxTaskRecords::responses()
{
    QFETCH(std::shared_ptr<pmxKovBhIpcTaskResponse>, response);
    QFETCH(std::string, text);
    QCOMPARE(written(*response), text);
    QVERIFY(pmxJsonSerializeObject(*response, text, 0));
    QCOMPARE(written(*response), text);
}

void TestPmxTaskRecords::responseNeedsItsMembers_data()
{
    QTest::addColumn<std::string>("text");
    QTest::newRow("id") << R"({"error":"","result":"","type":""})"s;
    QTest::newRow("type") << R"({"error":"","id":"","result":""})"s;
    QTest::newRow("error") << R"({"id":"","result":"","type":""})"s;
    QTest::newRow("result") << R"({"error":"","id":"","type":""})"s;
}

void TestPmxTaskRecords::responseNeedsItsMembers()
{
    QFETCH(std::string, text);
    pmxKovBhIpcTaskResponse response;
    QVERIFY(!pmxJsonSerializeObject(response, text, 0));
}

void TestPmxTaskRecords::settingsAnswerFollowsTheRecord()
{
    const auto settings = std::make_shared<WebExtensionSettings>();
    pmxKovBhIpcQuerySettingsTaskResponse response;
    response.settings = settings;
    settings->locale = "later";
    QVERIFY(written(response).find(R"("locale":"later")") != std::string::npos);

    QVERIFY(pmxJsonSerializeObject(
        response, R"({"error":"","id":"","result":"","settings":{"locale":"x"},"type":""})"s, 0));
    QCOMPARE(response.settings->locale, "x"s);
    QCOMPARE(settings->locale, "later"s);
}

void TestPmxTaskRecords::settingsEquality_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::addColumn<bool>("equal");
    QTest::newRow("dlvideo") << QByteArray(R"({"browser":{"menu":{"dlvideo":false}}})") << true;
    for (const char *change : {
             R"({"locale":"x"})",
             R"({"browser":{"menu":{"dllink":false}}})",
             R"({"browser":{"menu":{"dlall":false}}})",
             R"({"browser":{"menu":{"dlselected":false}}})",
             R"({"browser":{"menu":{"dlpage":true}}})",
             R"({"browser":{"menu":{"dlYtChannel":false}}})",
             R"({"browser":{"monitor":{"enable":false}}})",
             R"({"browser":{"monitor":{"allowDownload":false}}})",
             R"({"browser":{"monitor":{"skipSmallerThan":"1"}}})",
             R"({"browser":{"monitor":{"skipExtensions":"x"}}})",
             R"({"browser":{"monitor":{"skipServersEnabled":true}}})",
             R"({"browser":{"monitor":{"skipServers":"x"}}})",
             R"({"browser":{"monitor":{"skipIfKeyPressed":true}}})",
             R"({"browser":{"monitor":{"video":{"enable":true}}}})",
             R"({"browser":{"monitor":{"video":{"enableSnifferDll":true}}}})",
             R"({"browser":{"monitor":{"video":{"showButton":false}}}})",
         }) {
        QTest::newRow(change) << QByteArray(change) << false;
    }
}

void TestPmxTaskRecords::settingsEquality()
{
    QFETCH(QByteArray, change);
    QFETCH(bool, equal);
    const auto changed = read<WebExtensionSettings>(change.constData());
    QCOMPARE(changed == WebExtensionSettings(), equal);
    QCOMPARE(changed == WebExtensionSettings(changed), true);
}

QTEST_GUILESS_MAIN(TestPmxTaskRecords)
#include "tst_pmxtaskrecords.moc"
