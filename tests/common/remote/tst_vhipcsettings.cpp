#include "crossedparts.h"
#include "qtappsettingsinmemorymanager.h"
#include "turnedclock.h"
#include "vhipcsettings.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <utility>

namespace {

using Message = QHash<QString, QVariant>;
using Values = QHash<QString, QString>;
using ValuesList = QList<std::pair<QString, QString>>;

/// What a client uses, and what an application uses that serves it.
constexpr quint32 clientFlags = 79;
constexpr quint32 applicationFlags = 61;
constexpr quint32 allFlags = 127;

const QString user = u"user"_qs;

Message settingsMessage(const QString &reason)
{
    return {{u"name"_qs, u"settings"_qs}, {u"reason"_qs, reason}};
}

Message changedMessage(const QVariantHash &values)
{
    Message message = settingsMessage(u"changed"_qs);
    message.insert(u"values"_qs, values);
    return message;
}

Message allMessage(const QVariantHash &values, const QVariantHash &defaultValues = {})
{
    Message message = settingsMessage(u"all"_qs);
    message.insert(u"values"_qs, values);
    message.insert(u"defaultValues"_qs, defaultValues);
    return message;
}

QList<Message> takeMessages(QSignalSpy &spy)
{
    QList<Message> result;
    while (!spy.isEmpty())
        result.append(spy.takeFirst().at(0).value<Message>());
    return result;
}

struct End {
    explicit End(quint32 flags, const QSet<QString> &localNames = {})
        : part(manager, flags, localNames, nullptr, clock)
    {
    }

    void change(const QString &name, const QString &value)
    {
        manager->setValues({{name, value}}, user);
    }
    QString value(const QString &name) const { return manager->value(name); }

    TurnedClock clock;
    QSharedPointer<QtAppSettingsInMemoryManager> manager =
        QSharedPointer<QtAppSettingsInMemoryManager>::create();
    VhIpcSettings part;
    QSignalSpy sent{&part, &VhIpcSettings::sendVh};
    QSignalSpy ready{&part, &VhIpcSettings::readyStateChanged};
};

} // namespace

class TestVhIpcSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void applies_what_its_flags_allow_data();
    void applies_what_its_flags_allow();
    void tells_what_its_flags_allow_data();
    void tells_what_its_flags_allow();
    void asks_for_everything_when_connected();
    void answers_the_question_for_everything();
    void takes_defaults_and_keeps_unknown_ones();
    void values_in_variants();

    void changes_cross_data();
    void changes_cross();
    void ends_agree_whatever_crosses_data();
    void ends_agree_whatever_crosses();
    void a_change_that_met_no_application_is_told_again_data();
    void a_change_that_met_no_application_is_told_again();
};

void TestVhIpcSettings::applies_what_its_flags_allow_data()
{
    QTest::addColumn<Message>("message");
    QTest::addColumn<uint>("neededFlags");
    QTest::addColumn<QString>("expected");

    QTest::newRow("changed") << changedMessage({{u"A"_qs, u"new"_qs}}) << 1U << u"new"_qs;
    QTest::newRow("all") << allMessage({{u"A"_qs, u"new"_qs}}) << (2U | 64U) << u"new"_qs;
    QTest::newRow("all without values") << settingsMessage(u"all"_qs) << (2U | 64U) << QString();
    QTest::newRow("resetToDefaults") << settingsMessage(u"resetToDefaults"_qs) << 4U << QString();
    QTest::newRow("unknown reason") << settingsMessage(u"Changed"_qs) << 0U << u"old"_qs;
    QTest::newRow("no reason") << Message() << 0U << u"old"_qs;
}

void TestVhIpcSettings::applies_what_its_flags_allow()
{
    QFETCH(Message, message);
    QFETCH(uint, neededFlags);
    QFETCH(QString, expected);

    for (const bool allowed : {true, false}) {
        End end(allowed ? allFlags : allFlags & ~neededFlags);
        end.manager->setValues({{u"A"_qs, u"old"_qs}}, VhIpcSettings::changesSource());
        end.part.processVh(message);
        QCOMPARE(end.value(u"A"_qs), allowed ? expected : u"old"_qs);
        // Whatever it took is not told back.
        QCOMPARE(end.sent.count(), 0);
    }
}

void TestVhIpcSettings::tells_what_its_flags_allow_data()
{
    QTest::addColumn<uint>("flag");
    QTest::addColumn<QList<Message>>("expected");
    QTest::newRow("nothing") << 0U << QList<Message>{};
    QTest::newRow("valuesChanged")
        << 8U << QList<Message>{changedMessage({{u"A"_qs, u"1"_qs}, {u"B"_qs, u"2"_qs}})};
    QTest::newRow("allValuesChanged") << 16U << QList<Message>{allMessage({{u"C"_qs, u"3"_qs}})};
    QTest::newRow("settingsResetToDefaults")
        << 32U << QList<Message>{settingsMessage(u"resetToDefaults"_qs)};
}

void TestVhIpcSettings::tells_what_its_flags_allow()
{
    QFETCH(uint, flag);
    QFETCH(QList<Message>, expected);
    End end(flag);
    end.part.onConnectChanged(true);
    for (const QString &source : {user, u"VhIpcSettings"_qs}) {
        end.manager->setValues({{u"A"_qs, u"0"_qs}, {u"B"_qs, u"2"_qs}, {u"A"_qs, u"1"_qs}},
                               source);
        end.manager->setAllValues({{u"C"_qs, u"3"_qs}}, source);
        end.manager->resetToDefaults(source);
        QCOMPARE(takeMessages(end.sent), source == user ? expected : QList<Message>{});
    }
}

void TestVhIpcSettings::asks_for_everything_when_connected()
{
    End end(clientFlags);
    QVERIFY(!end.part.isReady());
    end.part.onConnectChanged(true);
    QCOMPARE(takeMessages(end.sent), QList<Message>{settingsMessage(u"queryAll"_qs)});
    QVERIFY(!end.part.isReady());
    end.part.processVh(allMessage({}));
    QVERIFY(end.part.isReady());
    end.part.onConnectChanged(false);
    QVERIFY(!end.part.isReady());
    QCOMPARE(end.ready.count(), 2);
    end.part.onConnectChanged(true);
    QCOMPARE(takeMessages(end.sent), QList<Message>{settingsMessage(u"queryAll"_qs)});

    // Only an end that asks depends on the answer.
    End application(applicationFlags);
    application.part.onConnectChanged(true);
    application.part.onConnectChanged(false);
    QVERIFY(application.part.isReady());
    QCOMPARE(application.sent.count(), 0);

    // Without ApplyAll, nothing but the answer counts.
    End follower(64);
    follower.part.onConnectChanged(true);
    follower.part.processVh(allMessage({{u"A"_qs, u"first"_qs}}));
    follower.part.processVh(allMessage({{u"A"_qs, u"second"_qs}}));
    QCOMPARE(follower.value(u"A"_qs), u"first"_qs);
}

void TestVhIpcSettings::answers_the_question_for_everything()
{
    End end(applicationFlags);
    end.manager->setAllDefaultValues({{u"A"_qs, u"default"_qs}});
    end.manager->setValues({{u"B"_qs, u"\u20ac"_qs}}, VhIpcSettings::changesSource());
    end.part.processVh(settingsMessage(u"queryAll"_qs));
    QCOMPARE(takeMessages(end.sent),
             QList<Message>{allMessage({{u"B"_qs, u"\u20ac"_qs}}, {{u"A"_qs, u"default"_qs}})});
}

void TestVhIpcSettings::takes_defaults_and_keeps_unknown_ones()
{
    End end(clientFlags, {u"Local"_qs});
    end.manager->setAllDefaultValues(
        {{u"Both"_qs, u"own"_qs}, {u"Own"_qs, u"own"_qs}, {u"Local"_qs, u"own"_qs}});
    const QVariantHash received{{u"Both"_qs, u"peer's"_qs}, {u"Local"_qs, u"peer's"_qs}};
    end.part.processVh(allMessage(received, received));
    QCOMPARE(
        end.manager->allDefaultValues(),
        (Values{{u"Both"_qs, u"peer's"_qs}, {u"Own"_qs, u"own"_qs}, {u"Local"_qs, u"own"_qs}}));
    QCOMPARE(end.manager->allValues(), (Values{{u"Both"_qs, u"peer's"_qs}}));
}

void TestVhIpcSettings::values_in_variants()
{
    const QVariantHash variants{{u"A"_qs, u"x"_qs}, {u"B"_qs, 5}, {u"C"_qs, QVariantList{1, 2}}};
    QCOMPARE(VhIpcSettings::valuesHashFromVariant(variants),
             (Values{{u"A"_qs, u"x"_qs}, {u"B"_qs, u"5"_qs}, {u"C"_qs, QString()}}));
    ValuesList list = VhIpcSettings::valuesVectorFromVariant(variants);
    std::sort(list.begin(), list.end());
    QCOMPARE(list, (ValuesList{{u"A"_qs, u"x"_qs}, {u"B"_qs, u"5"_qs}, {u"C"_qs, QString()}}));
    QCOMPARE(VhIpcSettings::valuesHashFromVariant(u"no map"_qs), Values());
}

void TestVhIpcSettings::changes_cross_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("deliveries");

    // c, a: the client, the application sets the setting to the digit that follows.
    // <, >: one message reaches the client, the application.
    // R: the application resets. W: it replaces all values by one that it had.
    const auto row = [](const char *name, const char *script, const char *expected,
                        int deliveries) {
        QTest::newRow(name) << QString::fromLatin1(script) << QString::fromLatin1(expected)
                            << deliveries;
    };
    // Whether its change had arrived is what a client cannot know: it asks, once.
    row("nothing crosses", "c1 > a2 <", "2", 4);
    row("nothing crosses any more", "c1 > a2 < > < a3", "3", 5);
    row("a change made before the answer is there", "reconnect c1", "1", 3);
    row("a change made while the answer is under way", "reconnect > c1 <", "1", 3);
    row("both change, the application first", "a2 c1", "1", 4);
    row("both change to the same", "a1 c1", "1", 2);
    row("the client changes twice", "a2 c1 c3", "3", 5);
    row("both change twice", "a2 c1 < a4 c3", "3", 8);
    row("a reset crosses", "a5 < R c1", "1", 5);
    row("a replacement crosses", "W c1", "1", 4);
}

void TestVhIpcSettings::changes_cross()
{
    QFETCH(QString, script);
    QFETCH(QString, expected);
    QFETCH(int, deliveries);
    End client(clientFlags);
    End application(applicationFlags);
    CrossedParts link(client.part, application.part);
    link.setConnected(true);
    link.deliverAll();

    int delivered = 0;
    const QStringList steps = script.split(u' ');
    for (const QString &step : steps) {
        if (step == u"reconnect") {
            link.setConnected(false);
            link.setConnected(true);
        } else if (step == u"<") {
            delivered += link.deliverToA();
        } else if (step == u">") {
            delivered += link.deliverToB();
        } else if (step == u"R") {
            application.manager->resetToDefaults(user);
        } else if (step == u"W") {
            application.manager->setAllValues({{u"S"_qs, u"9"_qs}}, user);
        } else {
            (step.at(0) == u'c' ? client : application).change(u"S"_qs, step.mid(1));
        }
    }
    delivered += link.deliverAll();
    QCOMPARE(client.value(u"S"_qs), expected);
    QCOMPARE(application.value(u"S"_qs), expected);
    // No more is said than it takes to agree.
    QCOMPARE(delivered, deliveries);
}

void TestVhIpcSettings::ends_agree_whatever_crosses_data()
{
    QTest::addColumn<uint>("seed");
    for (uint seed = 0; seed < 300; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestVhIpcSettings::ends_agree_whatever_crosses()
{
    QFETCH(uint, seed);
    QRandomGenerator random(seed);
    const QStringList names{u"A"_qs, u"B"_qs, u"C"_qs};
    const auto name = [&] { return names.at(random.bounded(int(names.size()))); };
    const auto value = [&] { return QString::number(random.bounded(3)); };

    End client(clientFlags);
    End application(applicationFlags);
    application.manager->setAllDefaultValues({{u"A"_qs, u"0"_qs}});
    CrossedParts link(client.part, application.part);
    link.setConnected(true);

    for (int step = 0; step < 60; ++step) {
        switch (random.bounded(9)) {
        case 0:
        case 1:
            client.change(name(), value());
            break;
        case 2:
            application.change(name(), value());
            break;
        case 3:
            if (random.bounded(3) == 0)
                application.manager->resetToDefaults(user);
            break;
        case 4:
            if (random.bounded(3) == 0)
                application.manager->setAllValues({{name(), value()}}, user);
            break;
        case 5:
        case 6:
            link.deliverToB();
            break;
        default:
            link.deliverToA();
        }
    }
    QVERIFY(link.deliverAll() < 1000);
    for (const QString &each : names)
        QCOMPARE(client.value(each), application.value(each));

    // Peace has come: a change of either end takes one message.
    client.change(u"A"_qs, u"client's"_qs);
    QCOMPARE(link.deliverAll(), 1);
    QCOMPARE(application.value(u"A"_qs), u"client's"_qs);
    application.change(u"B"_qs, u"application's"_qs);
    QVERIFY(client.part.isReady());
    QVERIFY(link.deliverAll() <= 3);
    QCOMPARE(client.value(u"B"_qs), u"application's"_qs);
}

void TestVhIpcSettings::a_change_that_met_no_application_is_told_again_data()
{
    QTest::addColumn<bool>("connectedWhenMade");
    QTest::addColumn<int>("msUntilConnected");
    QTest::addColumn<QString>("expected");
    QTest::newRow("made offline just now") << false << 9999 << "1";
    QTest::newRow("made offline before the application began") << false << 10'000 << "0";
    QTest::newRow("under way when the link broke") << true << 9999 << "1";
    QTest::newRow("made on another connection long ago") << true << 10'000 << "0";
}

void TestVhIpcSettings::a_change_that_met_no_application_is_told_again()
{
    QFETCH(bool, connectedWhenMade);
    QFETCH(int, msUntilConnected);
    QFETCH(QString, expected);
    End client(clientFlags);
    End application(applicationFlags);
    application.change(u"S"_qs, u"0"_qs);
    CrossedParts link(client.part, application.part);
    link.setConnected(true);
    link.deliverAll();

    if (!connectedWhenMade)
        link.setConnected(false);
    client.change(u"S"_qs, u"1"_qs);
    link.setConnected(false);
    client.clock.advance(msUntilConnected);
    link.setConnected(true);
    link.deliverAll();
    QCOMPARE(client.value(u"S"_qs), expected);
    QCOMPARE(application.value(u"S"_qs), expected);
}

QTEST_GUILESS_MAIN(TestVhIpcSettings)
#include "tst_vhipcsettings.moc"
