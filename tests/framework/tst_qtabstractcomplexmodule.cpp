#include "logcapture.h"
#include "testmodules.h"

#include <QCoreApplication>
#include <QSharedPointer>
#include <QTest>

#include <memory>

class TestQtAbstractComplexModule : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void passes_data();
    void passes();
    void failureOfTakeDownIsRecordedAndTheRestGoesOn();
    void comesUpAgainAfterTakeDown();
    void secondCallsAreHarmless();
    void takeDownWhileWaiting_data();
    void takeDownWhileWaiting();
    void takeDownFromInsideStep_data();
    void takeDownFromInsideStep();
    void takeDownFromTheSignalOfTheAbandonedBringUp();
    void childAddedWhenAnotherHasComeUp();
    void overrideMayContinueLater();
    void childDestroyedDuringItsPass();
    void childDestroyedWhileUp();
    void childrenReleasedAfterLateTakeDown();
    void clearedWhileWaitingForChild();
    void nestedTreesFinishLate();
    void destroyedFromItsOwnSignal();
};

void TestQtAbstractComplexModule::passes_data()
{
    QTest::addColumn<End>("before");
    QTest::addColumn<QList<End>>("children");
    QTest::addColumn<End>("after");
    QTest::addColumn<QStringList>("up");
    QTest::addColumn<bool>("failed");
    QTest::addColumn<bool>("exit");
    QTest::addColumn<QStringList>("down");

    const QStringList all = words("before up, a up, b up, c up, after up");
    const QStringList allDown = words("before down, c down, b down, a down, after down");
    const QStringList untilB = words("before up, a up, b up");
    const QStringList bDown = words("before down, b down, a down, after down");
    const QList<End> three(3, End::AtOnce);

    QTest::newRow("no children") << End::AtOnce << QList<End>() << End::AtOnce
                                 << words("before up, after up") << false << false
                                 << words("before down, after down");
    QTest::newRow("all at once") << End::AtOnce << three << End::AtOnce << all << false << false
                                 << allDown;
    QTest::newRow("all later") << End::Later << QList<End>(3, End::Later) << End::Later << all
                               << false << false << allDown;
    QTest::newRow("one child later")
        << End::AtOnce << QList<End>{End::AtOnce, End::Later, End::AtOnce} << End::AtOnce << all
        << false << false << allDown;
    QTest::newRow("child fails") << End::AtOnce << QList<End>{End::AtOnce, End::Failed, End::AtOnce}
                                 << End::AtOnce << untilB << true << false << bDown;
    QTest::newRow("child fails later")
        << End::AtOnce << QList<End>{End::AtOnce, End::FailedLater, End::AtOnce} << End::AtOnce
        << untilB << true << false << bDown;
    QTest::newRow("child wants exit")
        << End::AtOnce << QList<End>{End::AtOnce, End::WantsExit, End::AtOnce} << End::AtOnce
        << untilB << false << true << bDown;
    QTest::newRow("fails before children")
        << End::Failed << three << End::AtOnce << words("before up") << true << false
        << words("before down, after down");
    QTest::newRow("wants exit before children")
        << End::WantsExit << three << End::AtOnce << words("before up") << false << true
        << words("before down, after down");
    QTest::newRow("fails after children")
        << End::AtOnce << three << End::Failed << all << true << false << allDown;
}

void TestQtAbstractComplexModule::passes()
{
    QFETCH(const End, before);
    QFETCH(const QList<End>, children);
    QFETCH(const End, after);
    QFETCH(const QStringList, up);
    QFETCH(const bool, failed);
    QFETCH(const bool, exit);
    QFETCH(const QStringList, down);

    Tree tree;
    tree.before = before;
    tree.after = after;
    for (qsizetype i = 0; i < children.size(); ++i)
        tree.addLeaf(QString(QChar(u'a' + static_cast<char16_t>(i))), children.at(i));
    PassSpy spy(&tree);

    tree.initialize(true);
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    QCOMPARE(spy.seen, words("+up, -up"));
    QCOMPARE(tree.takeJournal(), up);
    QCOMPARE(tree.initFailed(true), failed);
    QCOMPARE(tree.needExit(), exit);
    QVERIFY(!tree.currentModule());

    tree.initialize(false);
    QTRY_VERIFY(!tree.isInitializeRunning(false));
    QCOMPARE(spy.seen, words("+up, -up, +down, -down"));
    QCOMPARE(tree.takeJournal(), down);
    QVERIFY(!tree.initFailed(false));
}

void TestQtAbstractComplexModule::failureOfTakeDownIsRecordedAndTheRestGoesOn()
{
    Tree tree;
    tree.addLeaf(QStringLiteral("a"));
    tree.addLeaf(QStringLiteral("b"))->down = End::Failed;
    tree.initialize(true);
    tree.takeJournal();

    tree.initialize(false);
    QVERIFY(tree.initFailed(false));
    QVERIFY(!tree.initFailed(true));
    QCOMPARE(tree.takeJournal(), words("before down, b down, a down, after down"));
}

void TestQtAbstractComplexModule::comesUpAgainAfterTakeDown()
{
    Tree tree;
    Leaf *leaf = tree.addLeaf(QStringLiteral("a"), End::Never);
    tree.initialize(true);
    leaf->finish(true, End::Failed);
    QTRY_VERIFY(tree.initFailed(true) && !tree.isInitializeRunning(true));
    tree.initialize(false);
    tree.takeJournal();

    tree.initialize(true);
    QVERIFY(!tree.initFailed(true));
    leaf->finish(true, End::AtOnce);
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    QVERIFY(!tree.initFailed(true));
    QCOMPARE(tree.takeJournal(), words("before up, a up, after up"));
}

void TestQtAbstractComplexModule::secondCallsAreHarmless()
{
    const LogCapture log;
    Tree tree;
    tree.addLeaf(QStringLiteral("a"), End::Later);
    PassSpy spy(&tree);

    tree.initialize(false);
    QCOMPARE(spy.seen, words("+down, -down"));
    QCOMPARE(tree.takeJournal(), QStringList());

    tree.initialize(true);
    tree.initialize(true);
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    tree.initialize(true);
    QCOMPARE(tree.takeJournal(), words("before up, a up, after up"));
    QCOMPARE(log.texts().size(), 2);
    QVERIFY(log.texts().constFirst().startsWith(
        u"ASSERTION FAILED: module is down, ../../src/framework/qtabstractcomplexmodule,"));

    tree.leaves.front()->down = End::Later;
    tree.initialize(false);
    tree.initialize(false);
    tree.initialize(true);
    QTRY_VERIFY(!tree.isInitializeRunning(false));
    tree.initialize(false);
    QCOMPARE(tree.takeJournal(), words("before down, a down, after down"));
    QCOMPARE(spy.seen, words("+down, -down, +up, -up, +down, -down, +down, -down"));
    QCOMPARE(log.texts().size(), 3);
}

void TestQtAbstractComplexModule::takeDownWhileWaiting_data()
{
    QTest::addColumn<End>("before");
    QTest::addColumn<End>("child");
    QTest::addColumn<End>("after");
    QTest::addColumn<QStringList>("journal");

    QTest::newRow("for the own first step")
        << End::Never << End::AtOnce << End::AtOnce << words("before up, before down");
    QTest::newRow("for a child") << End::AtOnce << End::Never << End::AtOnce
                                 << words("before up, a up, b up, before down");
    QTest::newRow("for the own last step") << End::AtOnce << End::AtOnce << End::Never
                                           << words("before up, a up, b up, c up, after up, "
                                                    "before down");
}

void TestQtAbstractComplexModule::takeDownWhileWaiting()
{
    QFETCH(const End, before);
    QFETCH(const End, child);
    QFETCH(const End, after);
    QFETCH(const QStringList, journal);

    Tree tree;
    tree.before = before;
    tree.after = after;
    tree.addLeaf(QStringLiteral("a"));
    tree.addLeaf(QStringLiteral("b"), child);
    tree.addLeaf(QStringLiteral("c"));
    PassSpy spy(&tree);
    tree.initialize(true);
    QVERIFY(tree.isInitializeRunning(true));

    // That a child ends its abandoned bring-up is no news of the take-down.
    tree.onChild = [](bool, bool init) { QVERIFY(!init); };
    tree.before = End::Never;
    tree.initialize(false);
    QCOMPARE(spy.seen, words("+up, -up, +down"));
    QVERIFY(tree.initFailed(true));
    QCOMPARE(tree.journal, journal);

    // Children that were begun go down, each once; the late end of the old bring-up counts for
    // nothing.
    tree.after = End::AtOnce;
    tree.onInitializeSelfBeforeFinished(true);
    QCoreApplication::processEvents();
    QCOMPARE(tree.journal, journal);
    tree.onInitializeSelfBeforeFinished(false);
    QTRY_VERIFY(!tree.isInitializeRunning(false));
    QStringList expected = journal;
    for (const QString &name : {QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("a")}) {
        if (journal.contains(name + QStringLiteral(" up")))
            expected.append(name + QStringLiteral(" down"));
    }
    QCOMPARE(tree.journal, expected << QStringLiteral("after down"));
    QCOMPARE(spy.seen, words("+up, -up, +down, -down"));
}

void TestQtAbstractComplexModule::takeDownFromInsideStep_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QStringList>("journal");

    QTest::newRow("at the start") << QStringLiteral("start")
                                  << words("before up, before down, after down");
    QTest::newRow("own first step")
        << QStringLiteral("before") << words("before up, before down, after down");
    QTest::newRow("child") << QStringLiteral("child")
                           << words("before up, a up, before down, a down, after down");
    QTest::newRow("child's end") << QStringLiteral("child end")
                                 << words("before up, a up, before down, a down, after down");
    QTest::newRow("own last step")
        << QStringLiteral("after")
        << words("before up, a up, b up, after up, before down, b down, a down, after down");
}

void TestQtAbstractComplexModule::takeDownFromInsideStep()
{
    QFETCH(const QString, where);
    QFETCH(const QStringList, journal);

    Tree tree;
    Leaf *a = tree.addLeaf(QStringLiteral("a"));
    tree.addLeaf(QStringLiteral("b"));
    const auto takeDown = [&tree](bool init) {
        if (init)
            tree.initialize(false);
    };
    if (where == u"start")
        connect(&tree, &QtAbstractModule::initializeRunning, &tree,
                [takeDown](bool running, bool init) { takeDown(running && init); });
    else if (where == u"before")
        tree.insideBefore = takeDown;
    else if (where == u"child")
        a->onPass = takeDown;
    else if (where == u"child end")
        tree.onChild = [takeDown](bool running, bool init) { takeDown(!running && init); };
    else
        tree.insideAfter = takeDown;
    PassSpy spy(&tree);

    tree.initialize(true);
    QCOMPARE(tree.journal, journal);
    QVERIFY(tree.initFailed(true));
    QVERIFY(!tree.isInitializeRunning(true) && !tree.isInitializeRunning(false));
    QCOMPARE(spy.seen, words("+up, -up, +down, -down"));
}

void TestQtAbstractComplexModule::takeDownFromTheSignalOfTheAbandonedBringUp()
{
    Tree tree;
    tree.addLeaf(QStringLiteral("a"), End::Never);
    connect(&tree, &QtAbstractModule::initializeRunning, &tree, [&tree](bool running, bool init) {
        if (!running && init && tree.initFailed(true))
            tree.initialize(false);
    });
    tree.initialize(true);
    tree.initialize(false);
    QCOMPARE(tree.journal, words("before up, a up, before down, a down, after down"));
}

void TestQtAbstractComplexModule::childAddedWhenAnotherHasComeUp()
{
    Tree tree;
    Leaf *a = tree.addLeaf(QStringLiteral("a"), End::Later);
    tree.onChild = [&](bool running, bool init) {
        if (!running && init && tree.currentModule() == a)
            tree.addLeaf(QStringLiteral("b"));
    };
    tree.initialize(true);
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    tree.initialize(false);
    QCOMPARE(tree.journal,
             words("before up, a up, b up, after up, before down, b down, a down, after down"));
}

void TestQtAbstractComplexModule::overrideMayContinueLater()
{
    // The parent's word about a child's end, not the child's signal, continues the pass.
    class Patient : public Tree {
    public:
        void goOn() { Tree::onModuleInitializeRunning(false, true); }

    protected:
        void onModuleInitializeRunning(bool, bool) override { }
    };
    Patient tree;
    tree.addLeaf(QStringLiteral("a"));
    tree.addLeaf(QStringLiteral("b"));
    tree.initialize(true);
    QCoreApplication::processEvents();
    QCOMPARE(tree.journal, words("before up, a up"));
    tree.goOn();
    QTRY_COMPARE(tree.journal, words("before up, a up, b up"));
    tree.goOn();
    QTRY_COMPARE(tree.journal, words("before up, a up, b up, after up"));
    QVERIFY(!tree.isInitializeRunning(true));
}

void TestQtAbstractComplexModule::childDestroyedDuringItsPass()
{
    Tree tree;
    Leaf *a = tree.addLeaf(QStringLiteral("a"));
    tree.addLeaf(QStringLiteral("b"), End::Never);
    tree.initialize(true);
    tree.leaves.pop_back();
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    QVERIFY(tree.initFailed(true));

    a->down = End::Never;
    tree.initialize(false);
    tree.leaves.clear();
    QTRY_VERIFY(!tree.isInitializeRunning(false));
    QVERIFY(tree.initFailed(false));
    QCOMPARE(tree.journal, words("before up, a up, b up, before down, a down, after down"));
}

void TestQtAbstractComplexModule::childDestroyedWhileUp()
{
    Tree tree;
    tree.addLeaf(QStringLiteral("a"));
    tree.addLeaf(QStringLiteral("b"));
    tree.initialize(true);
    tree.leaves.pop_back();
    tree.takeJournal();
    tree.initialize(false);
    QCOMPARE(tree.journal, words("before down, a down, after down"));
    QVERIFY(!tree.initFailed(false));
}

void TestQtAbstractComplexModule::childrenReleasedAfterLateTakeDown()
{
    // The last step lets go of the child whose own late end led there.
    Tree tree;
    tree.addLeaf(QStringLiteral("a"))->down = End::Later;
    auto inner = QSharedPointer<Tree>::create();
    inner->after = End::Later;
    tree.addModule(inner.data());
    tree.insideAfter = [&](bool init) {
        if (init)
            return;
        tree.clearModules();
        tree.leaves.clear();
        inner.clear();
    };
    tree.initialize(true);
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    tree.initialize(false);
    QTRY_VERIFY(!tree.isInitializeRunning(false));
    QVERIFY(!inner);
    QCOMPARE(tree.journal, words("before up, a up, after up, before down, a down, after down"));
}

void TestQtAbstractComplexModule::clearedWhileWaitingForChild()
{
    Tree tree;
    Leaf *a = tree.addLeaf(QStringLiteral("a"), End::Never);
    tree.addLeaf(QStringLiteral("b"));
    tree.initialize(true);
    tree.clearModules();
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    QVERIFY(!tree.initFailed(true));
    a->finish(true, End::Failed);
    tree.initialize(false);
    QCOMPARE(tree.journal, words("before up, a up, after up, before down, after down"));
}

void TestQtAbstractComplexModule::nestedTreesFinishLate()
{
    Tree tree;
    Tree inner;
    inner.before = End::Later;
    inner.addLeaf(QStringLiteral("x"), End::FailedLater);
    tree.addModule(&inner);
    tree.addLeaf(QStringLiteral("b"));
    tree.initialize(true);
    QTRY_VERIFY(!tree.isInitializeRunning(true));
    QVERIFY(tree.initFailed(true));
    QCOMPARE(tree.journal, words("before up"));
    tree.initialize(false);
    QTRY_VERIFY(!tree.isInitializeRunning(false));
    QCOMPARE(inner.journal, words("before up, x up, before down, x down, after down"));
    QCOMPARE(tree.journal, words("before up, before down, after down"));
}

void TestQtAbstractComplexModule::destroyedFromItsOwnSignal()
{
    auto tree = std::make_unique<Tree>();
    tree->after = End::Later;
    connect(tree.get(), &QtAbstractModule::initializeRunning, this,
            [&tree](bool running, bool init) {
                if (!running && !init)
                    tree.reset();
            });
    tree->initialize(true);
    QTRY_VERIFY(!tree->isInitializeRunning(true));
    tree->initialize(false);
    QTRY_VERIFY(!tree);
}

QTEST_GUILESS_MAIN(TestQtAbstractComplexModule)
#include "tst_qtabstractcomplexmodule.moc"
