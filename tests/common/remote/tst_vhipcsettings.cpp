#include "fakeclock.h"
#include "qtappsettingsinmemorymanager.h"
#include "rows.h"
#include "vhipcsettings.h"

#include <QRandomGenerator>
#include <QSignalSpy>

#include <tuple>

namespace {

using Message = QHash<QString, QVariant>;
using Values = QHash<QString, QString>;
using Messages = QList<QVariantList>;

/// The flags of a client, and of the application that serves it.
constexpr quint32 clientFlags = 79;
constexpr quint32 applicationFlags = 61;
constexpr quint32 allFlags = 127;

const QString user = u"user"_qs;

Message settingsMessage(const QString &reason, const Message &more = {})
{
    Message message{{u"name"_qs, u"settings"_qs}, {u"reason"_qs, reason}};
    message.insert(more);
    return message;
}

Message allMessage(const QVariantHash &values, const QVariantHash &defaultValues = {})
{
    return settingsMessage(u"all"_qs,
                           {{u"values"_qs, values}, {u"defaultValues"_qs, defaultValues}});
}

/// The messages that a part has sent.
Messages sentOnce(const Message &message) { return {{QVariant::fromValue(message)}}; }

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

    FakeClock clock;
    QSharedPointer<QtAppSettingsInMemoryManager> manager =
        QSharedPointer<QtAppSettingsInMemoryManager>::create();
    VhIpcSettings part;
    QSignalSpy sent{&part, &VhIpcSettings::sendVh};
};

/// Two ends, and a link that holds messages until the test delivers them, so that they can cross in
/// any order.
struct Link {
    Link() { setConnected(true); }
    void setConnected(bool connected)
    {
        client.sent.clear();
        application.sent.clear();
        client.part.onConnectChanged(connected);
        application.part.onConnectChanged(connected);
    }
    static bool deliver(End &from, End &to)
    {
        if (from.sent.isEmpty())
            return false;
        to.part.processVh(from.sent.takeFirst().at(0).value<Message>());
        return true;
    }
    /// Returns the number of messages until both ends were silent; gives up after a limit.
    int deliverAll()
    {
        int count = 0;
        while (count < 1000 && (deliver(client, application) || deliver(application, client)))
            ++count;
        return count;
    }

    End client{clientFlags};
    End application{applicationFlags};
};

} // namespace

class TestVhIpcSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void appliesWhatItsFlagsAllow()
    {
        const QVariantHash values{{u"A"_qs, u"new"_qs}};
        const std::tuple<Message, quint32, QString> cases[] = {
            {settingsMessage(u"changed"_qs, {{u"values"_qs, values}}), 1, u"new"_qs},
            {allMessage(values), 2 | 64, u"new"_qs},
            {settingsMessage(u"resetToDefaults"_qs), 4, {}},
            {settingsMessage(u"Changed"_qs), 0, u"old"_qs}};
        for (const auto &[message, neededFlags, expected] : cases) {
            for (const bool allowed : {true, false}) {
                End end(allowed ? allFlags : allFlags & ~neededFlags);
                end.manager->setValues({{u"A"_qs, u"old"_qs}}, VhIpcSettings::changesSource());
                end.part.processVh(message);
                QCOMPARE(end.value(u"A"_qs), allowed ? expected : u"old"_qs);
                // Changes from the peer are not echoed.
                QCOMPARE(end.sent.count(), 0);
            }
        }
    }

    void tellsWhatItsFlagsAllow()
    {
        const QVariantHash values{{u"A"_qs, u"1"_qs}, {u"B"_qs, u"2"_qs}};
        const std::pair<quint32, Messages> cases[] = {
            {0, {}},
            {8, sentOnce(settingsMessage(u"changed"_qs, {{u"values"_qs, values}}))},
            {16, sentOnce(allMessage({{u"C"_qs, u"3"_qs}}, {{u"D"_qs, u"4"_qs}}))},
            {32, sentOnce(settingsMessage(u"resetToDefaults"_qs))}};
        for (const auto &[flag, expected] : cases) {
            for (const QString &source : {user, u"VhIpcSettings"_qs}) {
                End end(flag);
                end.manager->setAllDefaultValues({{u"D"_qs, u"4"_qs}});
                end.manager->setValues({{u"A"_qs, u"0"_qs}, {u"B"_qs, u"2"_qs}, {u"A"_qs, u"1"_qs}},
                                       source);
                end.manager->setAllValues({{u"C"_qs, u"3"_qs}}, source);
                end.manager->resetToDefaults(source);
                QCOMPARE(end.sent, source == user ? expected : Messages());
            }
        }
    }

    void readyWithTheAnswer()
    {
        // Without ApplyAll, only the answer counts.
        End follower(64, {u"Local"_qs});
        follower.manager->setAllDefaultValues({{u"Both"_qs, u"own"_qs}, {u"Local"_qs, u"own"_qs}});
        for (int connection = 0; connection < 2; ++connection) {
            QVERIFY(!follower.part.isReady());
            follower.part.onConnectChanged(true);
            QCOMPARE(follower.sent, sentOnce(settingsMessage(u"queryAll"_qs)));
            follower.sent.clear();
            const QVariantHash received{{u"Both"_qs, u"peer's"_qs}, {u"Local"_qs, u"peer's"_qs}};
            follower.part.processVh(allMessage(received, received));
            follower.part.processVh(allMessage({{u"Both"_qs, u"second"_qs}}));
            QVERIFY(follower.part.isReady());
            follower.part.onConnectChanged(false);
        }
        QCOMPARE(follower.manager->allValues(), (Values{{u"Both"_qs, u"peer's"_qs}}));
        QCOMPARE(follower.manager->allDefaultValues(),
                 (Values{{u"Both"_qs, u"peer's"_qs}, {u"Local"_qs, u"own"_qs}}));
    }

    void changesCross_data()
    {
        // c1, a2: the client sets the setting to 1, the application to 2.
        // <, >: one message reaches the client, the application.
        // k: the client could not store the setting. R: the application resets. W: it replaces all
        // values by one that it had.
        // -, +: the link goes down, comes up again. A number: milliseconds pass.
        const Rows<QString, QString, int> row("script", "expected", "deliveries");
        // A client cannot know whether its change had arrived: it requests the settings once.
        row("nothing crosses", u"c1 > a2 <"_qs, u"2"_qs, 4);
        row("nothing crosses any more", u"c1 > a2 < > < a3"_qs, u"3"_qs, 5);
        row("a change made before the answer is there", u"- + c1"_qs, u"1"_qs, 3);
        row("a change made while the answer is under way", u"- + > c1 <"_qs, u"1"_qs, 3);
        row("both change, the application first", u"a2 c1"_qs, u"1"_qs, 4);
        row("both change to the same", u"a1 c1"_qs, u"1"_qs, 2);
        row("the client changes twice", u"a2 c1 c3"_qs, u"3"_qs, 5);
        row("both change twice", u"a2 c1 < a4 c3"_qs, u"3"_qs, 8);
        row("a reset crosses", u"a5 < R c1"_qs, u"1"_qs, 5);
        row("a replacement crosses", u"W c1"_qs, u"1"_qs, 4);
        // A change of the last ten seconds without an application is sent again.
        row("made offline just now", u"a0 < - c1 9999 +"_qs, u"1"_qs, 4);
        row("made offline before the application began", u"a0 < - c1 10000 +"_qs, u"0"_qs, 3);
        row("made offline, and not stored", u"a0 < - c1 k 99999 +"_qs, u"1"_qs, 4);
        row("under way when the link broke", u"a0 < c1 - 9999 +"_qs, u"1"_qs, 4);
        row("never confirmed before the link broke", u"a0 < c1 - 99999 +"_qs, u"1"_qs, 4);
        row("resent, and never confirmed", u"a0 < - c1 + - 99999 +"_qs, u"1"_qs, 4);
        row("confirmed while the link stood", u"a0 < c1 > 1000 > < - a2 99999 +"_qs, u"2"_qs, 6);
    }

    void changesCross()
    {
        QFETCH(const QString, script);
        QFETCH(const QString, expected);
        Link link;
        link.deliverAll();
        int delivered = 0;
        const QStringList steps = script.split(u' ');
        for (const QString &step : steps) {
            if (step == u"-" || step == u"+")
                link.setConnected(step == u"+");
            else if (step == u"<")
                delivered += Link::deliver(link.application, link.client);
            else if (step == u">")
                delivered += Link::deliver(link.client, link.application);
            else if (step == u"k")
                link.client.part.resendOnConnect({u"S"_qs, u"another"_qs});
            else if (step == u"R")
                link.application.manager->resetToDefaults(user);
            else if (step == u"W")
                link.application.manager->setAllValues({{u"S"_qs, u"9"_qs}}, user);
            else if (step.at(0) == u'c' || step.at(0) == u'a')
                (step.at(0) == u'c' ? link.client : link.application).change(u"S"_qs, step.mid(1));
            else
                link.client.clock.advance(step.toInt());
        }
        delivered += link.deliverAll();
        QCOMPARE(link.client.value(u"S"_qs), expected);
        QCOMPARE(link.application.value(u"S"_qs), expected);
        // No more messages than necessary.
        QTEST(delivered, "deliveries");
    }

    void endsAgreeWhateverCrosses()
    {
        const QStringList names{u"A"_qs, u"B"_qs, u"C"_qs};
        for (quint32 seed = 0; seed < 300; ++seed) {
            QRandomGenerator random(seed);
            const auto name = [&] { return names.at(random.bounded(3)); };
            const auto value = [&] { return QString::number(random.bounded(3)); };
            Link link;
            const auto &application = link.application.manager;
            application->setAllDefaultValues({{u"A"_qs, u"0"_qs}});
            for (int step = 0; step < 60; ++step) {
                const int kind = random.bounded(27);
                if (kind == 0)
                    application->resetToDefaults(user);
                else if (kind == 1)
                    application->setAllValues({{name(), value()}}, user);
                else if (kind < 6)
                    link.application.change(name(), value());
                else if (kind < 12)
                    link.client.change(name(), value());
                else if (kind < 19)
                    Link::deliver(link.client, link.application);
                else
                    Link::deliver(link.application, link.client);
            }
            QVERIFY2(link.deliverAll() < 1000, qPrintable(QString::number(seed)));
            for (const QString &each : names)
                QCOMPARE(link.client.value(each), link.application.value(each));
            // Settled: a change takes one message.
            link.client.change(u"A"_qs, u"client's"_qs);
            QCOMPARE(link.deliverAll(), 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestVhIpcSettings)
#include "tst_vhipcsettings.moc"
