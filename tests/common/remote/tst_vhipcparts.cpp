// The parts for downloads, JSON texts and miscellaneous tasks.

#include "fakeclock.h"
#include "logcapture.h"
#include "remoteincomingdownloadsprocessor.h"
#include "remotejsonrequestsmanager.h"
#include "rows.h"
#include "uniqueint64idgen.h"
#include "vhipcincomingdownloadsclient.h"
#include "vhipcjsonrequests.h"

#include <QSignalSpy>

#include <memory>
#include <thread>

namespace {

using Message = QHash<QString, QVariant>;
using Signals = QList<QVariantList>;

Message downloadsMessage(const QString &reason, qint64 id)
{
    return {{u"name"_qs, u"incomingDownloads"_qs}, {u"reason"_qs, reason}, {u"id"_qs, id}};
}

Message jsonMessage(const QString &reason, qint64 id, const QString &json)
{
    return {{u"name"_qs, u"jsonRequests"_qs},
            {u"reason"_qs, reason},
            {u"id"_qs, id},
            {u"json"_qs, json}};
}

/// Both parts with a queue, and the objects that use them.
struct PartsFixture {
    FakeClock clock;
    QSharedPointer<UniqueInt64IdGen> idGen = QSharedPointer<UniqueInt64IdGen>::create();
    QSharedPointer<RemoteIncomingDownloadsProcessor> processor =
        QSharedPointer<RemoteIncomingDownloadsProcessor>::create(idGen);
    VhIpcIncomingDownloadsClient downloads{processor, nullptr, clock};
    QSharedPointer<RemoteJsonRequestsManager> manager =
        QSharedPointer<RemoteJsonRequestsManager>::create(idGen);
    VhIpcJsonRequests json{manager, nullptr, clock};
};

} // namespace

class TestVhIpcParts : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everythingIsSentOrFailsOnce_data()
    {
        // s: something new is to be sent. S: and again when the next one fails. +, -: the
        // connection. A number: milliseconds pass. =1: the application answers number 1, which no
        // other part than that of the downloads waits for. 1> is sent, 1! fails, 1= is answered; R,
        // r: the application is required, no longer.
        const Rows<bool, QString, QString> row("isJson", "script", "expected");
        for (const bool isJson : {false, true}) {
            const QByteArray part = isJson ? "JSON: " : "download: ";
            row(part + "sent in order when connected", isJson, u"s s + 60000"_qs, u"R r 1> 2>"_qs);
            row(part + "fails 30 s after the last", isJson, u"s 20000 s 29999 # 1 + -"_qs,
                u"R # r 1! 2!"_qs);
            row(part + "waits anew when sent again", isJson, u"S 30000 +"_qs, u"R r 1! R r 2>"_qs);
        }
        row("download: 55 s at most", false, u"s 29000 s 25999 # 1 3999 # 1 +"_qs,
            u"R # 1! # r 2!"_qs);
        row("download: 55 s, and the next is sent", false, u"s 29000 s 26000 +"_qs,
            u"R 1! r 2>"_qs);
        row("JSON: as long as newer ones come", true, u"s 29000 s 29000 s +"_qs,
            u"R r 1> 2> 3>"_qs);
        row("JSON: not sent again", true, u"+ s - + s"_qs, u"1> 2>"_qs);
        row("download: a disconnect fails what is in flight", false, u"+ s s =1 - - s +"_qs,
            u"1> 2> 1= 2! R r 3>"_qs);
        row("download: a new one after a disconnect", false, u"+ S - +"_qs, u"1> 1! R r 2>"_qs);
        row("download: answers that nobody waits for", false, u"+ s =2 - =1 + s =2 =2"_qs,
            u"1> 1! 2> 2="_qs);
    }

    void everythingIsSentOrFailsOnce()
    {
        QFETCH(const bool, isJson);
        QFETCH(const QString, script);
        const LogCapture lines;
        PartsFixture s;
        QStringList log;
        bool sendAgain = false;
        QtAbstractVhIpcPart &part =
            isJson ? static_cast<QtAbstractVhIpcPart &>(s.json) : s.downloads;
        const auto send = [&] {
            if (isJson)
                s.manager->send(s.manager->nextId(), {}, true);
            else
                s.processor->process(s.processor->createJob());
        };
        const auto ended = [&](qint64 id, bool added) {
            log += QString::number(id) + (added ? u'=' : u'!');
            if (std::exchange(sendAgain, false))
                send();
        };
        connect(s.manager.data(), &RemoteJsonRequestsManager::sendFailed, &part,
                [&](qint64 id, const QString &, bool isRequest) {
                    QVERIFY(isRequest);
                    ended(id, false);
                });
        connect(s.processor.data(), &RemoteIncomingDownloadsProcessor::finished, &part,
                [&](qint64 id, bool added, bool, AbstractDownloadAbortReason, const QString &error,
                    bool isSilent) {
                    QCOMPARE(error, added ? QString() : u"Connection failure"_qs);
                    QVERIFY(!isSilent);
                    ended(id, added);
                });
        connect(&part, &QtAbstractVhIpcPart::sendVh, &part,
                [&](const Message &message) { log += message.value(u"id"_qs).toString() + u'>'; });
        connect(&part, &QtAbstractVhIpcPart::requiringServerChanged, &part,
                [&](bool requiring) { log += requiring ? u"R"_qs : u"r"_qs; });

        const QStringList steps = script.split(u' ');
        for (const QString &step : steps) {
            if (step == u"s" || step == u"S") {
                sendAgain = step == u"S";
                send();
            } else if (step == u"+" || step == u"-") {
                part.onConnectChanged(step == u"+");
            } else if (step == u"#") {
                log += step;
            } else if (step.startsWith(u'=')) {
                Message answer = downloadsMessage(u"finished"_qs, step.mid(1).toLongLong());
                answer.insert(u"added"_qs, true);
                part.processVh(answer);
            } else {
                s.clock.advance(step.toInt());
            }
        }
        QTEST(log.join(u' '), "expected");
        QCOMPARE(lines.texts().size(),
                 log.filter(u"!"_qs).size()); // each is logged with the reason
    }

    void answers()
    {
        const std::pair<Message, QString> cases[] = {
            // The id, added, aborted, why, the error, silent.
            {{{u"added"_qs, true}}, u"1 true false 0  false"_qs},
            {{{u"aborted"_qs, true}, {u"abortReason"_qs, -77}, {u"isSilent"_qs, true}},
             u"1 false true -77  true"_qs},
            {{{u"error"_qs, u"\u20ac"_qs}}, u"1 false false 0 \u20ac false"_qs},
            {{{u"reason"_qs, u"add"_qs}}, QString()}};
        for (const auto &[fields, expected] : cases) {
            PartsFixture s;
            s.downloads.onConnectChanged(true);
            const QSignalSpy sent(&s.downloads, &VhIpcIncomingDownloadsClient::sendVh);
            AbstractNewDownloadsRequestJob job = s.processor->createJob();
            job.request.downloads = {{}};
            s.processor->process(job);
            Message add = downloadsMessage(u"add"_qs, 1);
            add.insert(u"request"_qs, toVariantHash(job));
            QCOMPARE(sent, (Signals{{QVariant::fromValue(add)}}));
            const QSignalSpy finished(s.processor.data(),
                                      &RemoteIncomingDownloadsProcessor::finished);
            Message message = downloadsMessage(u"finished"_qs, 1);
            message.insert(fields);
            s.downloads.processVh(message);
            QStringList said;
            for (const QVariant &argument : finished.value(0))
                said += argument.metaType().flags() & QMetaType::IsEnumeration
                    ? QString::number(argument.toInt())
                    : argument.toString();
            QCOMPARE(said.join(u' '), expected);
        }
    }

    void jsonTexts()
    {
        const QString text = u"{\"a\": \"\\u20ac \"}\n"_qs;
        const std::pair<Message, Signals> cases[] = {
            {jsonMessage(u"request"_qs, 9, text), {{9LL, text, true}}},
            {jsonMessage(u"response"_qs, 1LL << 40, {}), {{1LL << 40, QString(), false}}},
            {jsonMessage(u"Request"_qs, 9, text), {}}};
        for (const auto &[message, expected] : cases) {
            PartsFixture s;
            s.json.onConnectChanged(true);
            const QSignalSpy received(s.manager.data(), &RemoteJsonRequestsManager::received);
            const QSignalSpy sent(&s.json, &VhIpcJsonRequests::sendVh);
            s.json.processVh(message);
            QCOMPARE(received, expected);
            // The same in the other direction, from any thread.
            for (const QVariantList &one : expected) {
                std::thread([&] {
                    s.json.send(one.at(0).toLongLong(), one.at(1).toString(), one.at(2).toBool());
                }).join();
                QVERIFY(sent.isEmpty());
                QCoreApplication::processEvents();
                QCOMPARE(sent, (Signals{{QVariant::fromValue(message)}}));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestVhIpcParts)
#include "tst_vhipcparts.moc"
