#include "abstracterror.h"
#include "logcapture.h"
#include "qtobjectfactory.h"
#include "qttoggleswitchobject.h"
#include "uniqueint64idgen.h"

#include <QTest>
#include <QTextStream>

#include <memory>
#include <thread>

class TestFrameworkObjects : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void errorAsText()
    {
        QString text;
        QTextStream stream(&text);
        stream << Qt::hex
               << genericError(GenericErrorCode::ProtocolMismatch, "přes %1 %4",
                               std::string("kept\0lost", 9))
               << AbstractError(-10, "", "", "");
        QCOMPARE(text,
                 u"{ERROR: |CODE|: 2, |CATEGORY|: GenericError, |SOURCE|: přes %1 %4, "
                 "|DESCRIPTION|: kept}"
                 "{ERROR: |CODE|: -10, |CATEGORY|: , |SOURCE|: , |DESCRIPTION|: }"_qs);
    }

    void errorInContainers()
    {
        const AbstractError error(7, "č", "s", "d");
        const QVariantHash hash{{u"code"_qs, 7},
                                {u"category"_qs, u"č"_qs},
                                {u"source"_qs, u"s"_qs},
                                {u"description"_qs, u"d"_qs}};
        QCOMPARE(toContainer<QVariantHash>(error), hash);
        QVERIFY(abstractErrorFromContainer<QVariantHash>(hash) == error);
        const QVariantMap odd{
            {u"code"_qs, u"12"_qs}, {u"category"_qs, QVariantList{1}}, {u"source"_qs, 3}};
        QVERIFY(abstractErrorFromContainer<QVariantMap>(odd) == AbstractError(12, "", "3", ""));
    }

    void trackerLogsWhatIsAliveAtExit()
    {
        const LogCapture log;
        auto tracker = std::make_unique<QtQObjectsTracker>();
        UniqueInt64IdGen ids;
        const auto leaked = qtCreateObject<QtToggleSwitchObject>(true);
        const auto other = qtCreateObject<QTimer>();
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&ids] {
                for (int i = 0; i < 500; ++i) {
                    qtCreateObject<QtToggleSwitchObject>(false);
                    ids.nextId();
                }
            });
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(ids.nextId(), 2001);
        tracker.reset();
        const QString line = u"[QtQObjectsTracker]: WARNING: still alive at exit: "_qs;
        QCOMPARE(log.texts(),
                 QStringList({line + u"QTimer"_qs, line + u"QtToggleSwitchObject"_qs}));
        QVERIFY(qtCreateObject<QtToggleSwitchObject>(true));
    }
};

QTEST_GUILESS_MAIN(TestFrameworkObjects)
#include "tst_frameworkobjects.moc"
