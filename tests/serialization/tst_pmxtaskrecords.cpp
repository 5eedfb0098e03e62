#include "pmxjsonserializeobject.h"
#include "pmxkovbhipctask.h"

#include <QTest>

#include <sstream>

using namespace std::string_literals;

namespace {

std::string written(pmxSerializable &record)
{
    std::ostringstream out;
    return pmxJsonSerializeObject(record, out, 0) ? out.str() : "failed"s;
}

/// In these tests quotes are written as "'".
std::string json(const char *text) { return QByteArray(text).replace('\'', '"').toStdString(); }

} // namespace

class TestPmxTaskRecords : public QObject {
    Q_OBJECT
private Q_SLOTS:
    /// What is read and written again is the same text, or that of what was forgiven.
    void tasks_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::addColumn<std::string>("rewritten");
        const auto row = [](const char *name, const char *text, const char *rewritten = nullptr) {
            QTest::newRow(name) << json(text) << json(rewritten ? rewritten : text);
        };
        row("handshake",
            "{'handshake':{'api_version':'4294967295','base64_encoding_for_rcv':'0',"
            "'base64_encoding_for_send':'1','browser':'b','response_add_crlf':'1',"
            "'response_send_data_len_as_string':'0','uri_encoding_for_rcv':'1',"
            "'uri_encoding_for_send':'0'},'id':'1','type':'handshake and more'}");
        row("handshake with wrong members",
            "{'type':'handshake','id':'1','handshake':{'response_add_crlf':'yes',"
            "'uri_encoding_for_rcv':true,'uri_encoding_for_send':'1','api_version':3,"
            "'browser':{}},'json':'of another type'}",
            "{'handshake':{'api_version':'0','base64_encoding_for_rcv':'0',"
            "'base64_encoding_for_send':'0','browser':'','response_add_crlf':'0',"
            "'response_send_data_len_as_string':'0','uri_encoding_for_rcv':'0',"
            "'uri_encoding_for_send':'1'},'id':'1','type':'handshake'}");
        row("downloads",
            "{'create_downloads':{'catchedDownloads':'1','downloads':{'item':["
            "{'documentUrl':'d','fileSize':'1','httpCookies':'c','httpPostData':'p',"
            "'httpReferer':'r','originalUrl':'o','suggestedName':'s','url':'u','userAgent':'a'}]},"
            "'ignoreSettings':'0','waitResponse':'1'},'id':'1','type':'create_downloads'}");
        row("download with only its URL, given alone, unknown size",
            "{'type':'create_downloads','id':'1','create_downloads':{'ignoreSettings':'1',"
            "'downloads':{'item':{'url':'u','fileSize':'-1','userAgent':5}}}}",
            "{'create_downloads':{'catchedDownloads':'0','downloads':{'item':["
            "{'documentUrl':'','fileSize':'18446744073709551615','httpCookies':'',"
            "'httpPostData':'','httpReferer':'','originalUrl':'','suggestedName':'','url':'u',"
            "'userAgent':''}]},'ignoreSettings':'1','waitResponse':'0'},'id':'1',"
            "'type':'create_downloads'}");
        row("sniffer",
            "{'id':'1','type':'video_sniffer','video_sniffer':{'flashVars':'fv','frameUrl':'f',"
            "'name':'n','otherFlashVars':'of','otherSwfUrls':'os','requestHeaders':'q',"
            "'requestId':'i','responseHeaders':'p','srcTabUrl':'t','swfUrl':'s','url':'u',"
            "'webPageUrl':'w'}}");
        row("network request",
            "{'id':'1','network_request_notification':{'data':'d','requestHeaders':'q',"
            "'requestId':'i','responseHeaders':'p','srcTabUrl':'t','type':'y','url':'u'},"
            "'type':'network_request_notification'}");
        row("download state",
            "{'browser_download_state_report':{'state':'s','url':'u'},'id':'1',"
            "'type':'browser_download_state_report'}");
        row("settings",
            "{'id':'1','post_settings':{'browser':{'menu':{'dlYtChannel':false,'dlall':false,"
            "'dllink':true,'dlpage':true,'dlselected':false,'dlvideo':true},'monitor':{"
            "'allowDownload':false,'enable':true,'skipExtensions':'pls m3u',"
            "'skipIfKeyPressed':true,'skipServers':'example.org','skipServersEnabled':true,"
            "'skipSmallerThan':'-9223372036854775808','video':{'enable':true,"
            "'enableSnifferDll':true,'showButton':false}}},'locale':'de'},"
            "'type':'post_settings'}");
    }

    void tasks()
    {
        QFETCH(const std::string, text);
        pmxKovBhIpcTask task;
        QVERIFY(pmxJsonSerializeObject(task, text, 0));
        QTEST(written(task), "rewritten");
    }

    void failedTasks()
    {
        // What was read of them: id and type.
        const std::tuple<const char *, const char *, const char *> cases[] = {
            {"hello", "", ""},
            {"'id'", "", ""},
            {"[{'id':'1','type':'shutdown'}]", "", ""},
            {"{'id':1,'type':'shutdown'}", "", ""},
            {"{'id':'1'}", "1", ""},
            {"{'id':'1','type':null}", "1", ""},
            {"{'id':'1','type':'window x','window x':{}}", "1", "window x"},
            {"{'id':'1','type':'kov_json_task','json':{}}", "1", "kov_json_task"},
            {"{'id':'1','type':'create_downloads','create_downloads':{'catchedDownloads':'1',"
             "'downloads':{'item':[{'url':'a'},{'url':5},{'url':'c'}]}}}",
             "1", "create_downloads"}};
        for (const auto &[text, id, type] : cases) {
            pmxKovBhIpcTask task;
            QVERIFY2(!pmxJsonSerializeObject(task, json(text), 0), text);
            QCOMPARE(task.readFailed(), text != "hello"s);
            QCOMPARE(task.id, id);
            QCOMPARE(task.type, type);
            const auto &downloads = task.create_downloads.downloads;
            QCOMPARE(downloads.size(), std::size_t(task.type == "create_downloads"));
            QVERIFY(!task.create_downloads.catchedDownloads);
        }
    }

    void thrownTasks()
    {
        const std::pair<const char *, const char *> cases[] = {
            {"create_downloads", "'x'"},
            {"create_downloads", "[]"},
            {"post_settings", "null"},
            {"post_settings", "{'browser':{'monitor':[]}}"}};
        for (const auto &[type, record] : cases) {
            const auto text = u"{'id':'1','type':'%1','%1':%2}"_qs.arg(QLatin1String(type),
                                                                       QLatin1String(record));
            std::string thrown;
            try {
                pmxKovBhIpcTask task;
                pmxJsonSerializeObject(task, json(text.toLatin1().constData()), 0);
            } catch (const std::runtime_error &error) {
                thrown = error.what();
            }
            QCOMPARE(thrown,
                     R"x("type mismatch! call is<type>() before get<type>()" && is<object>())x");
        }
    }

    void settingsEquality()
    {
        const WebExtensionSettings defaults;
        for (const char *change :
             {"},'locale':'x'", "'menu':{'dllink':false}}", "'menu':{'dlall':false}}",
              "'menu':{'dlselected':false}}", "'menu':{'dlpage':true}}",
              "'menu':{'dlYtChannel':false}}", "'menu':{'dlvideo':false}}",
              "'monitor':{'enable':false}}", "'monitor':{'allowDownload':false}}",
              "'monitor':{'skipSmallerThan':'1'}}", "'monitor':{'skipExtensions':'x'}}",
              "'monitor':{'skipServersEnabled':true}}", "'monitor':{'skipServers':'x'}}",
              "'monitor':{'skipIfKeyPressed':true}}", "'monitor':{'video':{'enable':true}}}",
              "'monitor':{'video':{'enableSnifferDll':true}}}",
              "'monitor':{'video':{'showButton':false}}}"}) {
            WebExtensionSettings changed;
            QVERIFY(pmxJsonSerializeObject(changed, json("{'browser':{") + json(change) + "}", 0));
            // Nobody is told of a change of "dlvideo" alone.
            QVERIFY2((changed == defaults) == (std::strstr(change, "dlvideo") != nullptr), change);
        }
    }
};

QTEST_GUILESS_MAIN(TestPmxTaskRecords)
#include "tst_pmxtaskrecords.moc"
