#include "isolatedhost.h"
#include "keystatewatcher.h"
#include "logcapture.h"
#include "pmxkovbhipckeystatetaskprocessor.h"
#include "pmxkovbhipctask.h"
#include "rows.h"

namespace {

/// A key that a test holds down.
class HeldKey : public KeyStateWatcher {
public:
    HeldKey() : KeyStateWatcher(45) { }
    void setHeld(bool held) { setPressed(held); }
    /// Nothing here samples the key; it is told.
    void update() override { setPressed(!isPressed(false)); }
};

} // namespace

class TestTasks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void answers_data()
    {
        const Rows<QString, QString> rows("message", "expected");
        const auto row = [&rows](const QString &message, const QString &expected) {
            rows(qPrintable(message), message, expected);
        };
        const QString unknown = u"unknown_task_type"_qs;
        row(u"{'id':'1','type':'browser_proxy','browser_proxy':{}}"_qs,
            answer(u"1"_qs, u"browser_proxy"_qs, u"failure"_qs));
        row(u"{'id':'2','type':'post_settings','post_settings':{'browser':{'menu':{}}}}"_qs,
            answer(u"2"_qs, u"post_settings"_qs, u""_qs));
        row(u"{'id':'2','type':'post_settings'}"_qs,
            answer(u"2"_qs, u"post_settings"_qs, u"invalid arguments"_qs));
        row(u"{'id':'42','type':'kov_json_task','json':'{}'}"_qs,
            answer(u"42"_qs, u"kov_json_task"_qs, u""_qs));
        row(u"{'id':'3','type':'window','window':{'action':'show'}}"_qs,
            answer(u"3"_qs, u"window"_qs, unknown));
        for (const QString &type : {u"Browser_proxy"_qs, u"windows"_qs, u"1"_qs, u" "_qs})
            row(u"{'id':'5','type':'%1'}"_qs.arg(type), answer(u"5"_qs, type, unknown));
        const QString report = u"browser_download_state_report"_qs;
        for (const char *const state : {"in_progress", "interrupted", "complete", "odd"}) {
            for (const char *const url : {"http://a/b", ""}) {
                const bool isValid = *url && *state != 'o';
                row(u"{'id':'1','type':'%1','%1':{'url':'%2','state':'%3'}}"_qs.arg(
                        report, QLatin1String(url), QLatin1String(state)),
                    answer(u"1"_qs, report, isValid ? u""_qs : u"invalid arguments"_qs));
            }
        }
        row(u"{'id':'1'}"_qs, answer(u"1"_qs, u""_qs, unknown));
        row(u"{'type':'key_state'}"_qs, answer(u""_qs, u""_qs, unknown));
    }

    void answers()
    {
        QFETCH(const QString, message);
        QTEST(IsolatedHost().send(message), "expected");
    }

    /// Usually only what went wrong.
    void log()
    {
        IsolatedHost host;
        for (const int level : {1, 3}) {
            const LogCapture log(level);
            host.send(u"{'id':'5','type':'key_state'}"_qs);
            host.send(u"{'id':'6','type':'odd'}"_qs);
            host.send(u"{"_qs);
            const QString texts = log.texts().join(u'|');
            QCOMPARE(texts.contains(u"task key_state #5 answered after"_qs), level == 3);
            QVERIFY(texts.contains(u"task of unknown type #6 answered after"_qs));
            QCOMPARE(texts.count(u"ASSERTION FAILED"_qs), 1);
        }
    }

    void keyStatePushes()
    {
        IsolatedHost host;
        const auto key = QSharedPointer<HeldKey>::create();
        pmxKovBhIpcKeyStateTaskProcessor processor(host.sender, key);
        key->setHeld(true);
        QCOMPARE(host.sent(), u""_qs); // no query yet
        bool answered = false;
        processor.process(std::make_shared<pmxKovBhIpcTask>(),
                          [&answered](const auto &, const auto &) { answered = true; });
        QVERIFY(answered);
        key->setHeld(true); // no change
        key->setHeld(false);
        QCOMPARE(host.sent(),
                 u"{'error':'','id':'','keyCode':45,'pressed':false,'result':'',"
                 "'type':'key_state'}"_qs);
        host.sender.reset();
        host.send(u"{'id':'1','type':'handshake','handshake':{}}"_qs);
        key->setHeld(true);
        QCOMPARE(host.sent(), u""_qs);
    }
};

QTEST_GUILESS_MAIN(TestTasks)
#include "tst_tasks.moc"
