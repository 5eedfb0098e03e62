#include "isolatedhost.h"
#include "keystatewatcher.h"
#include "pmxkovbhipckeystatetaskprocessor.h"
#include "pmxkovbhipctask.h"
#include "rows.h"

namespace {

/// A key that a test holds down.
class HeldKey : public KeyStateWatcher {
public:
    HeldKey() : KeyStateWatcher(45) { }
    void setHeld(bool held) { setPressed(held); }
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
        row(u"{'id':'1'}"_qs, answer(u"1"_qs, u""_qs, unknown));
        row(u"{'type':'key_state'}"_qs, answer(u""_qs, u""_qs, unknown));
    }

    void answers()
    {
        QFETCH(const QString, message);
        QTEST(IsolatedHost().tell(message), "expected");
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
        key->setHeld(true);
        QCOMPARE(host.sent(), u""_qs);
    }
};

QTEST_GUILESS_MAIN(TestTasks)
#include "tst_tasks.moc"
