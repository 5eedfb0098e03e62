#include "kovdownloadsqueue.h"
#include "kovnotifications.h"
#include "qtappsettingsinmemorymanager.h"

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// A fake notification service.
class StandIn : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    /// Title, body and captions of the notifications.
    QList<QStringList> told;

public Q_SLOTS:
    QStringList GetCapabilities() { return {u"body-markup"_qs, u"actions"_qs}; }
    uint Notify(const QString &, uint, const QString &, const QString &title, const QString &body,
                const QStringList &actions, const QVariantMap &, int)
    {
        told.append(QStringList{title, body} + actions);
        return static_cast<uint>(told.size());
    }

Q_SIGNALS:
    void ActionInvoked(uint id, const QString &action);
};

class TestKovNotifications : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// On a session bus of its own, and with a fake xdg-open that records its argument.
    void tellsAndDoesWhatIsChosen()
    {
        const QTemporaryDir folder;
        QProcess bus;
        bus.start(u"dbus-daemon"_qs, {u"--session"_qs, u"--nofork"_qs, u"--print-address"_qs});
        QVERIFY(bus.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readAllStandardOutput().trimmed());
        QFile opener(folder.filePath(u"xdg-open"_qs));
        QVERIFY(opener.open(QIODevice::WriteOnly));
        opener.write("#!/bin/sh\nprintf %s \"$1\" >\"$0.new\"; mv \"$0.new\" \"$0.told\"\n");
        opener.close();
        opener.setPermissions(QFile::ReadUser | QFile::ExeUser);
        qputenv("PATH", QFile::encodeName(folder.path()) + ':' + qgetenv("PATH"));
        const auto opened = [&opener] {
            QFile told(opener.fileName() + u".told"_qs);
            return told.open(QIODevice::ReadOnly) ? QString::fromUtf8(told.readAll()) : QString();
        };

        const QString downloads = folder.filePath(u"downloads"_qs);
        const auto settings = QSharedPointer<QtAppSettingsInMemoryManager>::create();
        settings->setValues({{u"DefaultDownloadPath"_qs, downloads},
                             {u"AutoRetryFailedDownloads"_qs, u"0"_qs},
                             {u"LocaleName"_qs, u"en"_qs}},
                            u"test"_qs);
        const auto queue = QSharedPointer<KovDownloadsQueue>::create(
            settings, nullptr, folder.filePath(u"jobs.sqlite"_qs));
        const KovNotifications notifications(settings, queue, QStringLiteral(KOVALO_TRANSLATIONS));
        queue->start();
        const auto add = [&queue](const QString &url, const QString &name) {
            KovDownloadRequest request;
            request.url = QUrl(url);
            request.suggestedName = name;
            return queue->add({request});
        };
        const auto ended = [&queue] { return !queue->hasWork(); };

        // There is no service yet.
        QCOMPARE(add(u"data:,1"_qs, u"1.txt"_qs), QString());
        QTRY_VERIFY(ended());
        QDBusConnection desktop =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"stand-in"_qs);
        StandIn standIn;
        QVERIFY(desktop.registerObject(u"/org/freedesktop/Notifications"_qs, &standIn,
                                       QDBusConnection::ExportAllContents));
        QVERIFY(desktop.registerService(u"org.freedesktop.Notifications"_qs));

        const QStringList buttons{u"default"_qs, u"Open"_qs,   u"open"_qs,
                                  u"Open"_qs,    u"folder"_qs, u"Show in folder"_qs};
        QCOMPARE(add(u"data:,2"_qs, u"<b>2 & 3.txt"_qs), QString());
        QTRY_COMPARE(standIn.told.size(), 2);
        QCOMPARE(standIn.told.at(0), (QStringList{u"Download added"_qs, u"data:,2"_qs}));
        QCOMPARE(standIn.told.at(1),
                 (QStringList{u"Download finished"_qs, u"_b_2 &amp; 3.txt"_qs} + buttons));
        Q_EMIT standIn.ActionInvoked(2, u"open"_qs);
        QTRY_COMPARE(opened(), downloads + u"/_b_2 & 3.txt"_qs);
        Q_EMIT standIn.ActionInvoked(2, u"folder"_qs);
        QTRY_COMPARE(opened(), downloads);

        // Nothing listens at that port.
        QCOMPARE(add(u"http://127.0.0.1:1/<4>"_qs, {}), QString());
        QTRY_COMPARE(standIn.told.size(), 4);
        QCOMPARE(standIn.told.at(3).at(0), u"Download failed"_qs);
        QVERIFY(standIn.told.at(3).at(1).contains(u"refused"));
        QVERIFY(!standIn.told.at(3).at(1).contains(u'<'));
        QCOMPARE(standIn.told.at(3).mid(2), (QStringList{u"retry"_qs, u"Retry"_qs}));
        Q_EMIT standIn.ActionInvoked(4, u"retry"_qs);
        QTRY_COMPARE(standIn.told.size(), 5);

        settings->setValues({{u"NotifyOfAddedDownloads"_qs, u"0"_qs},
                             {u"NotifyOfFinishedDownloads"_qs, u"0"_qs},
                             {u"LocaleName"_qs, u"de"_qs}},
                            u"test"_qs);
        QCOMPARE(add(u"data:,5"_qs, {}), QString());
        QTRY_VERIFY(ended());
        QCOMPARE(add(u"http://127.0.0.1:1/6"_qs, {}), QString());
        QTRY_COMPARE(standIn.told.size(), 6);
        QCOMPARE(standIn.told.at(5).constLast(), u"Wiederholen"_qs);
        // The reason as in the log.
        QCOMPARE(add(u"http://127.0.0.1:1/7"_qs, {}), QString());
        QTRY_COMPARE(standIn.told.size(), 7);
        QVERIFY(standIn.told.at(6).at(1).contains(u"refused"));
        bus.terminate();
        QVERIFY(bus.waitForFinished());
    }
};

QTEST_GUILESS_MAIN(TestKovNotifications)
#include "tst_kovnotifications.moc"
