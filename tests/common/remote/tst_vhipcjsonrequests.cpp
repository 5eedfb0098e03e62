#include "remotejsonrequestsmanager.h"
#include "turnedclock.h"
#include "uniqueint64idgen.h"
#include "vhipcjsonrequests.h"
#include "vhipcmisctasksclient.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

using Message = QHash<QString, QVariant>;

Message jsonMessage(const QString &reason, qint64 id, const QString &json)
{
    return {{u"name"_qs, u"jsonRequests"_qs},
            {u"reason"_qs, reason},
            {u"id"_qs, id},
            {u"json"_qs, json}};
}

QList<Message> messages(const QSignalSpy &spy)
{
    QList<Message> result;
    for (const QList<QVariant> &arguments : spy)
        result.append(arguments.at(0).value<Message>());
    return result;
}

QList<QVariant> texts(qint64 id, const QString &json, bool isRequest)
{
    return {id, json, isRequest};
}

} // namespace

class TestVhIpcJsonRequests : public QObject {
    Q_OBJECT
private:
    /// A part with its manager and its clock.
    struct Setup {
        TurnedClock clock;
        QSharedPointer<RemoteJsonRequestsManager> manager =
            QSharedPointer<RemoteJsonRequestsManager>::create(
                QSharedPointer<UniqueInt64IdGen>::create());
        VhIpcJsonRequests part{manager, nullptr, clock};
        QSignalSpy sent{&part, &VhIpcJsonRequests::sendVh};
        QSignalSpy failed{manager.data(), &RemoteJsonRequestsManager::sendFailed};
    };

private Q_SLOTS:
    void ids_come_from_the_shared_generator();
    void connected_texts_are_sent_at_once();
    void queued_texts_are_sent_once_in_order();
    void texts_fail_thirty_seconds_after_the_last();
    void a_failed_text_may_be_sent_again();
    void received_messages_data();
    void received_messages();
    void send_from_another_thread();
    void misc_tasks();
};

void TestVhIpcJsonRequests::ids_come_from_the_shared_generator()
{
    const auto idGen = QSharedPointer<UniqueInt64IdGen>::create();
    RemoteJsonRequestsManager manager(idGen);
    QCOMPARE(manager.nextId(), 1);
    QCOMPARE(idGen->nextId(), 2);
    QCOMPARE(manager.nextId(), 3);
}

void TestVhIpcJsonRequests::connected_texts_are_sent_at_once()
{
    Setup s;
    s.part.onConnectChanged(true);
    const QString text = u"{\"a\": \"\\u20ac \"}\n"_qs;
    s.manager->send(42, text, true);
    s.manager->send(-1, QString(), false);
    QCOMPARE(messages(s.sent),
             (QList<Message>{jsonMessage(u"request"_qs, 42, text),
                             jsonMessage(u"response"_qs, -1, QString())}));
    QVERIFY(!s.part.isRequiringServer());
}

void TestVhIpcJsonRequests::queued_texts_are_sent_once_in_order()
{
    Setup s;
    s.manager->send(7, u"first"_qs, true);
    QVERIFY(s.part.isRequiringServer());
    s.manager->send(5, u"second"_qs, false);
    QCOMPARE(s.sent.count(), 0);

    s.part.onConnectChanged(true);
    const QList<Message> expected{jsonMessage(u"request"_qs, 7, u"first"_qs),
                                  jsonMessage(u"response"_qs, 5, u"second"_qs)};
    QCOMPARE(messages(s.sent), expected);
    QVERIFY(!s.part.isRequiringServer());

    s.part.onConnectChanged(false);
    s.part.onConnectChanged(true);
    s.clock.advance(60'000);
    QCOMPARE(messages(s.sent), expected);
    QCOMPARE(s.failed.count(), 0);
}

void TestVhIpcJsonRequests::texts_fail_thirty_seconds_after_the_last()
{
    Setup s;
    s.manager->send(1, u"one"_qs, true);
    s.clock.advance(20'000);
    s.manager->send(2, u"two"_qs, false);
    s.clock.advance(29'999);
    QCOMPARE(s.failed.count(), 0);
    s.clock.advance(1);
    QCOMPARE(static_cast<const QList<QList<QVariant>> &>(s.failed),
             (QList<QList<QVariant>>{texts(1, u"one"_qs, true), texts(2, u"two"_qs, false)}));
    QVERIFY(!s.part.isRequiringServer());

    s.part.onConnectChanged(true);
    QCOMPARE(s.sent.count(), 0);
}

void TestVhIpcJsonRequests::a_failed_text_may_be_sent_again()
{
    Setup s;
    connect(s.manager.data(), &RemoteJsonRequestsManager::sendFailed, this,
            [&s](qint64 id, const QString &json, bool isRequest) {
                if (s.failed.count() == 1)
                    s.manager->send(id, json, isRequest);
            });
    s.manager->send(1, u"again"_qs, true);
    s.clock.advance(30'000);
    QVERIFY(s.part.isRequiringServer());
    s.part.onConnectChanged(true);
    QCOMPARE(messages(s.sent), QList<Message>{jsonMessage(u"request"_qs, 1, u"again"_qs)});
}

void TestVhIpcJsonRequests::received_messages_data()
{
    QTest::addColumn<Message>("message");
    QTest::addColumn<QList<QList<QVariant>>>("expected");
    QTest::newRow("request") << jsonMessage(u"request"_qs, 9, u"[]"_qs)
                             << QList<QList<QVariant>>{texts(9, u"[]"_qs, true)};
    QTest::newRow("response") << jsonMessage(u"response"_qs, 1LL << 40, u"x"_qs)
                              << QList<QList<QVariant>>{texts(1LL << 40, u"x"_qs, false)};
    QTest::newRow("other reason") << jsonMessage(u"Request"_qs, 9, u"[]"_qs)
                                  << QList<QList<QVariant>>{};
    QTest::newRow("no reason") << Message() << QList<QList<QVariant>>{};
    QTest::newRow("nothing but a reason") << Message{{u"reason"_qs, u"request"_qs}}
                                          << QList<QList<QVariant>>{texts(0, QString(), true)};
}

void TestVhIpcJsonRequests::received_messages()
{
    QFETCH(Message, message);
    QFETCH(QList<QList<QVariant>>, expected);
    Setup s;
    const QSignalSpy received(s.manager.data(), &RemoteJsonRequestsManager::received);
    s.part.processVh(message);
    QCOMPARE(static_cast<const QList<QList<QVariant>> &>(received), expected);
    QCOMPARE(s.sent.count(), 0);
}

void TestVhIpcJsonRequests::send_from_another_thread()
{
    Setup s;
    s.part.onConnectChanged(true);
    QThread *sendingThread = nullptr;
    connect(
        &s.part, &VhIpcJsonRequests::sendVh, &s.part,
        [&sendingThread] { sendingThread = QThread::currentThread(); }, Qt::DirectConnection);
    const std::unique_ptr<QThread> worker(
        QThread::create([&s] { s.part.send(3, u"far"_qs, true); }));
    worker->start();
    QVERIFY(worker->wait());
    QCOMPARE(sendingThread, nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(sendingThread, s.part.thread());
    QCOMPARE(messages(s.sent), QList<Message>{jsonMessage(u"request"_qs, 3, u"far"_qs)});
}

void TestVhIpcJsonRequests::misc_tasks()
{
    VhIpcMiscTasksClient part;
    const QSignalSpy sent(&part, &VhIpcMiscTasksClient::sendVh);
    part.activateMainWindow();
    const Message expected{{u"name"_qs, u"miscTasks"_qs}, {u"reason"_qs, u"activateMainWindow"_qs}};
    QCOMPARE(messages(sent), QList<Message>{expected});
    part.processVh(expected);
    QCOMPARE(sent.count(), 1);
    QVERIFY(!part.isRequiringServer());
}

QTEST_GUILESS_MAIN(TestVhIpcJsonRequests)
#include "tst_vhipcjsonrequests.moc"
