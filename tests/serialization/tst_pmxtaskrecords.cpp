#include "pmxjsonserializeobject.h"
#include "pmxkovbhipctask.h"

#include <QTest>

#include <sstream>
#include <tuple>

using namespace std::string_literals;

namespace {

/// In these tests quotes are written as "'".
std::string json(const char *text) { return QByteArray(text).replace('\'', '"').toStdString(); }

} // namespace

class TestPmxTaskRecords : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tasksReadAndWrittenAgain()
    {
        const std::pair<const char *, const char *> cases[] = {
            // Wrong members are forgiven.
            {"{'type':'handshake','id':'1','handshake':{'response_add_crlf':'yes',"
             "'uri_encoding_for_rcv':true,'uri_encoding_for_send':'1','api_version':3,"
             "'browser':{}},'json':'of another type'}",
             "{'handshake':{'api_version':'0','base64_encoding_for_rcv':'0',"
             "'base64_encoding_for_send':'0','browser':'','response_add_crlf':'0',"
             "'response_send_data_len_as_string':'0','uri_encoding_for_rcv':'0',"
             "'uri_encoding_for_send':'1'},'id':'1','type':'handshake'}"},
            // A download that is given alone, of unknown size.
            {"{'type':'create_downloads','id':'1','create_downloads':{'ignoreSettings':'1',"
             "'downloads':{'item':{'url':'u','fileSize':'-1','userAgent':5}}}}",
             "{'create_downloads':{'catchedDownloads':'0','downloads':{'item':["
             "{'documentUrl':'','fileSize':'18446744073709551615','httpCookies':'',"
             "'httpPostData':'','httpReferer':'','originalUrl':'','suggestedName':'','url':'u',"
             "'userAgent':''}]},'ignoreSettings':'1','waitResponse':'0'},'id':'1',"
             "'type':'create_downloads'}"},
            {"{'id':'1','type':'video_sniffer','video_sniffer':{'flashVars':'fv','frameUrl':'f',"
             "'name':'n','otherFlashVars':'of','otherSwfUrls':'os','requestHeaders':'q',"
             "'requestId':'i','responseHeaders':'p','srcTabUrl':'t','swfUrl':'s','url':'u',"
             "'webPageUrl':'w'}}",
             nullptr},
            {"{'id':'1','post_settings':{'browser':{'menu':{'dlYtChannel':false,'dlall':false,"
             "'dllink':true,'dlpage':true,'dlselected':false,'dlvideo':true},'monitor':{"
             "'allowDownload':false,'enable':true,'skipExtensions':'pls m3u',"
             "'skipIfKeyPressed':true,'skipServers':'example.org','skipServersEnabled':true,"
             "'skipSmallerThan':'-9223372036854775808','video':{'enable':true,"
             "'enableSnifferDll':true,'showButton':false}}},'locale':'de'},"
             "'type':'post_settings'}",
             nullptr}};
        for (const auto &[text, rewritten] : cases) {
            pmxKovBhIpcTask task;
            QVERIFY(pmxJsonSerializeObject(task, json(text), 0));
            std::ostringstream out;
            QVERIFY(pmxJsonSerializeObject(task, out, 0));
            QCOMPARE(out.str(), json(rewritten ? rewritten : text));
        }
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
            const QString text = u"{'id':'1','type':'%1','%1':%2}"_qs.arg(QLatin1String(type),
                                                                          QLatin1String(record));
            try {
                pmxKovBhIpcTask task;
                pmxJsonSerializeObject(task, json(text.toLatin1().constData()), 0);
                QFAIL("nothing was thrown");
            } catch (const std::runtime_error &error) {
                QCOMPARE(error.what(),
                         "\"type mismatch! call is<type>() before get<type>()\" && is<object>()");
            }
        }
    }

    void settingsEquality()
    {
        WebExtensionSettings defaults;
        std::ostringstream out;
        QVERIFY(pmxJsonSerializeObject(defaults, out, 0));
        const QByteArray text = QByteArray::fromStdString(out.str());
        int members = 0;
        for (const QByteArray &piece : text.split(',')) {
            // Another value for one member.
            const QByteArray member = piece.mid(piece.lastIndexOf('{') + 1);
            QByteArray other = member;
            other.replace("true", "FALSE").replace("false", "true").replace("FALSE", "false");
            other.replace(":\"", ":\"1");
            WebExtensionSettings changed;
            QVERIFY(pmxJsonSerializeObject(
                changed, QByteArray(text).replace(member, other).toStdString(), 0));
            // Nobody is told of a change of "dlvideo" alone.
            QVERIFY2((changed == defaults) == member.startsWith("\"dlvideo"), member);
            ++members;
        }
        QCOMPARE(members, 17);
    }
};

QTEST_GUILESS_MAIN(TestPmxTaskRecords)
#include "tst_pmxtaskrecords.moc"
