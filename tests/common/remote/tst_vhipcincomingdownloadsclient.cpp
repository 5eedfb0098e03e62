#include "remoteincomingdownloadsprocessor.h"
#include "turnedclock.h"
#include "uniqueint64idgen.h"
#include "vhipcincomingdownloadsclient.h"

#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <algorithm>

namespace {

using Message = QHash<QString, QVariant>;

const QString connectionFailure = u"Connection failure"_qs;

struct Outcome {
    qint64 id = 0;
    bool added = false;
    bool aborted = false;
    int reason = 0;
    QString error = {};
    bool isSilent = false;

    bool operator==(const Outcome &) const = default;
};

Message finishedMessage(qint64 id)
{
    return {{u"name"_qs, u"incomingDownloads"_qs},
            {u"reason"_qs, u"finished"_qs},
            {u"id"_qs, id},
            {u"added"_qs, true}};
}

struct Setup {
    Setup()
    {
        QObject::connect(
            processor.data(), &RemoteIncomingDownloadsProcessor::finished, &part,
            [this](qint64 id, bool added, bool aborted, AbstractDownloadAbortReason reason,
                   const QString &error, bool isSilent) {
                outcomes.append({id, added, aborted, static_cast<int>(reason), error, isSilent});
            });
    }

    qint64 processNewJob()
    {
        const AbstractNewDownloadsRequestJob job = processor->createJob();
        processor->process(job);
        return job.id;
    }
    QList<qint64> sentIds() const
    {
        QList<qint64> ids;
        for (const QList<QVariant> &arguments : sent)
            ids.append(arguments.at(0).value<Message>().value(u"id"_qs).toLongLong());
        return ids;
    }
    /// The ids of the jobs that failed so far, sorted; empty when one ended otherwise.
    QList<qint64> failedIds() const
    {
        QList<qint64> ids;
        for (const Outcome &outcome : outcomes) {
            if (outcome != Outcome{.id = outcome.id, .error = connectionFailure})
                return {};
            ids.append(outcome.id);
        }
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    TurnedClock clock;
    QSharedPointer<RemoteIncomingDownloadsProcessor> processor =
        QSharedPointer<RemoteIncomingDownloadsProcessor>::create(
            QSharedPointer<UniqueInt64IdGen>::create());
    VhIpcIncomingDownloadsClient part{processor, nullptr, clock};
    QSignalSpy sent{&part, &VhIpcIncomingDownloadsClient::sendVh};
    QList<Outcome> outcomes;
};

/// A language in which one text has another form.
class OneTextTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return QLatin1String(context) == u"VhIpcIncomingDownloadsClient"
                && QLatin1String(sourceText) == connectionFailure
            ? u"Verbindungsfehler"_qs
            : QString();
    }
};

} // namespace

class TestVhIpcIncomingDownloadsClient : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sends_a_job_at_once_while_connected();
    void sends_waiting_jobs_once_when_connected();
    void waiting_jobs_fail_thirty_seconds_after_the_last();
    void a_disconnect_fails_exactly_the_jobs_in_flight();
    void answers_data();
    void answers();
    void ignores_answers_that_nobody_waits_for();
    void a_failure_may_be_followed_by_a_new_job_data();
    void a_failure_may_be_followed_by_a_new_job();
    void failures_are_told_in_the_users_language();
};

void TestVhIpcIncomingDownloadsClient::sends_a_job_at_once_while_connected()
{
    Setup s;
    s.part.onConnectChanged(true);
    AbstractNewDownloadsRequestJob job = s.processor->createJob();
    QCOMPARE(job, (AbstractNewDownloadsRequestJob{.id = 1, .request = {}}));
    const auto info = std::make_shared<AbstractDownloadPersistentInfo>();
    info->source.url = QUrl(u"http://127.0.0.1/a?b"_qs);
    job.request.downloads = {{info}};
    job.request.selectedDownloads.fill(true, 1);
    s.processor->process(job);
    QCOMPARE(s.processor->createJob().id, 2);

    QCOMPARE(s.sent.count(), 1);
    Message message = s.sent.at(0).at(0).value<Message>();
    QCOMPARE(toNewDownloadsRequest(message.take(u"request"_qs).toHash()), job.request);
    QCOMPARE(message,
             (Message{{u"name"_qs, u"incomingDownloads"_qs},
                      {u"reason"_qs, u"add"_qs},
                      {u"id"_qs, 1LL}}));
    QVERIFY(!s.part.isRequiringServer());
}

void TestVhIpcIncomingDownloadsClient::sends_waiting_jobs_once_when_connected()
{
    Setup s;
    const QList<qint64> ids{s.processNewJob(), s.processNewJob(), s.processNewJob()};
    QVERIFY(s.part.isRequiringServer());
    QCOMPARE(s.sent.count(), 0);
    s.part.onConnectChanged(true);
    QCOMPARE(s.sentIds(), ids);
    QVERIFY(!s.part.isRequiringServer());

    s.part.onConnectChanged(true);
    s.part.onConnectChanged(false);
    s.part.onConnectChanged(true);
    s.clock.advance(60'000);
    QCOMPARE(s.sentIds(), ids);
}

void TestVhIpcIncomingDownloadsClient::waiting_jobs_fail_thirty_seconds_after_the_last()
{
    Setup s;
    const qint64 first = s.processNewJob();
    s.clock.advance(20'000);
    const qint64 second = s.processNewJob();
    s.clock.advance(29'999);
    QCOMPARE(s.outcomes.size(), 0);
    s.clock.advance(1);
    QCOMPARE(s.failedIds(), (QList<qint64>{first, second}));
    QVERIFY(!s.part.isRequiringServer());

    s.part.onConnectChanged(true);
    QCOMPARE(s.sent.count(), 0);
}

void TestVhIpcIncomingDownloadsClient::a_disconnect_fails_exactly_the_jobs_in_flight()
{
    Setup s;
    s.part.onConnectChanged(true);
    const qint64 answered = s.processNewJob();
    const qint64 unanswered = s.processNewJob();
    const qint64 alsoUnanswered = s.processNewJob();
    s.part.processVh(finishedMessage(answered));
    s.outcomes.clear();
    s.part.onConnectChanged(false);
    QCOMPARE(s.failedIds(), (QList<qint64>{unanswered, alsoUnanswered}));
    QVERIFY(!s.part.isRequiringServer());

    const qint64 waiting = s.processNewJob();
    s.part.onConnectChanged(false);
    QCOMPARE(s.outcomes.size(), 2);
    s.part.onConnectChanged(true);
    QCOMPARE(s.sentIds().constLast(), waiting);
}

void TestVhIpcIncomingDownloadsClient::answers_data()
{
    QTest::addColumn<Message>("fields");
    QTest::addColumn<Outcome>("expected");
    QTest::newRow("added") << Message{{u"added"_qs, true}} << Outcome{.id = 1, .added = true};
    QTest::newRow("aborted") << Message{{u"aborted"_qs, true},
                                        {u"abortReason"_qs, 2},
                                        {u"isSilent"_qs, true}}
                             << Outcome{.id = 1, .aborted = true, .reason = 2, .isSilent = true};
    QTest::newRow("failed") << Message{{u"error"_qs, u"\u20ac"_qs}}
                            << Outcome{.id = 1, .error = u"\u20ac"_qs};
    QTest::newRow("an unknown reason") << Message{{u"aborted"_qs, true}, {u"abortReason"_qs, -77}}
                                       << Outcome{.id = 1, .aborted = true, .reason = -77};
    QTest::newRow("nothing but the id") << Message{} << Outcome{.id = 1};
}

void TestVhIpcIncomingDownloadsClient::answers()
{
    QFETCH(Message, fields);
    QFETCH(Outcome, expected);
    Setup s;
    s.part.onConnectChanged(true);
    s.processNewJob();
    fields.insert(u"reason"_qs, u"finished"_qs);
    fields.insert(u"id"_qs, 1);
    s.part.processVh(fields);
    QCOMPARE(s.outcomes, QList<Outcome>{expected});
}

void TestVhIpcIncomingDownloadsClient::ignores_answers_that_nobody_waits_for()
{
    Setup s;
    s.part.onConnectChanged(true);
    const qint64 id = s.processNewJob();
    s.part.processVh(finishedMessage(id + 1));
    Message other = finishedMessage(id);
    other.insert(u"reason"_qs, u"add"_qs);
    s.part.processVh(other);
    QCOMPARE(s.outcomes.size(), 0);

    s.part.onConnectChanged(false);
    s.part.onConnectChanged(true);
    s.part.processVh(finishedMessage(id));
    QCOMPARE(s.failedIds(), QList<qint64>{id});

    const qint64 next = s.processNewJob();
    s.part.processVh(finishedMessage(next));
    s.part.processVh(finishedMessage(next));
    QCOMPARE(s.outcomes.size(), 2);
}

void TestVhIpcIncomingDownloadsClient::a_failure_may_be_followed_by_a_new_job_data()
{
    QTest::addColumn<bool>("connected");
    QTest::newRow("waited in vain") << false;
    QTest::newRow("disconnected") << true;
}

void TestVhIpcIncomingDownloadsClient::a_failure_may_be_followed_by_a_new_job()
{
    QFETCH(bool, connected);
    Setup s;
    qint64 second = 0;
    connect(s.processor.data(), &RemoteIncomingDownloadsProcessor::finished, this, [&] {
        if (second == 0)
            second = s.processNewJob();
    });
    s.part.onConnectChanged(connected);
    const qint64 first = s.processNewJob();
    if (connected)
        s.part.onConnectChanged(false);
    else
        s.clock.advance(30'000);
    QCOMPARE(s.failedIds(), QList<qint64>{first});
    QVERIFY(s.part.isRequiringServer());
    s.part.onConnectChanged(true);
    QCOMPARE(s.sentIds().constLast(), second);
}

void TestVhIpcIncomingDownloadsClient::failures_are_told_in_the_users_language()
{
    OneTextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    Setup s;
    s.processNewJob();
    s.clock.advance(30'000);
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(s.outcomes, (QList<Outcome>{{.id = 1, .error = u"Verbindungsfehler"_qs}}));
}

QTEST_GUILESS_MAIN(TestVhIpcIncomingDownloadsClient)
#include "tst_vhipcincomingdownloadsclient.moc"
