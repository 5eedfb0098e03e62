#include "logcapture.h"
#include "qtabstractcomplexmodule.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

/// Lets everything happen that is to happen later.
void settle()
{
    for (int i = 0; i < 30; ++i)
        QCoreApplication::processEvents();
}

/// What happened, in order, and what is to happen at which of it: "later" and "never" say when a
/// step ends, "fails", "failslater" and "exits" how, "takedown" asks for the take-down inside it.
struct Play {
    QStringList journal;
    QHash<QString, QString> script;
    QtAbstractModule *top = nullptr;
    std::vector<std::function<void()>> unfinished;

    /// Whoever is "later" waits in the owner's event queue.
    void step(QObject *owner, const QString &name, const std::function<void(const QString &)> &end)
    {
        journal.append(name);
        const QString act = script.value(name);
        if (act == u"takedown")
            top->initialize(false);
        if (act == u"never")
            unfinished.emplace_back([end] { end(QString()); });
        else if (act.endsWith(u"later"))
            QTimer::singleShot(0, owner, [end, act] { end(act); });
        else
            end(act);
    }
};

QString stepName(const QString &name, bool init) { return init ? name : u'~' + name; }

class Leaf : public QtAbstractModule {
public:
    Leaf(const QString &name, Play *play) : m_play(play) { setObjectName(name); }

    void initialize(bool init) override
    {
        if (!init && isInitializeRunning(true))
            setInitializeRunning(false, true);
        setInitializeRunning(true, init);
        m_play->step(this, stepName(objectName(), init), [this, init](const QString &act) {
            if (act.startsWith(u"fails"))
                setInitFailed(init);
            if (act == u"exits")
                setNeedExit();
            if (!isInitializeRunning(init))
                return;
            const QPointer<Leaf> self(this);
            setInitializeRunning(false, init);
            if (!self)
                qFatal("released while it reported");
        });
    }

private:
    Play *m_play;
};

class Tree : public QtAbstractComplexModule {
public:
    /// The script is made of "STEP=ACT"; steps on the way down begin with "~", the ends of children
    /// are "a.", "b.", "c.", those of passes "-up" and "-down", with "!" when failed.
    explicit Tree(const QString &script = {})
    {
        play.top = this;
        for (const QString &part : script.split(u' ', Qt::SkipEmptyParts))
            play.script.insert(part.section(u'=', 0, 0), part.section(u'=', 1));
        for (const QString &name : {u"a"_qs, u"b"_qs, u"c"_qs})
            addLeaf(name);
        connect(this, &QtAbstractModule::initializeRunning, this, [this](bool running, bool init) {
            const QString what = (running ? u"+"_qs : u"-"_qs) + (init ? u"up"_qs : u"down"_qs);
            const bool failed = !running && initFailed(init);
            play.step(this, failed ? what + u'!' : what, [](const QString &) {});
        });
    }

    void addLeaf(const QString &name)
    {
        leaves.push_back(std::make_unique<Leaf>(name, &play));
        addModule(leaves.back().get());
    }
    QString takeJournal() { return std::exchange(play.journal, {}).join(u' '); }

    Play play;
    std::vector<std::unique_ptr<Leaf>> leaves;

protected:
    void initializeSelfBefore(bool init) override
    {
        selfStep(u"before"_qs, init, [this, init] { onInitializeSelfBeforeFinished(init); });
    }
    void initializeSelfAfter(bool init) override
    {
        selfStep(u"after"_qs, init, [this, init] { onInitializeSelfAfterFinished(init); });
    }
    void onModuleInitializeRunning(bool running, bool init) override
    {
        const QString name = currentModule()->objectName() + u'.';
        const QString act = running || !init ? QString() : play.script.value(name);
        if (act == u"never")
            return;
        if (act == u"takedown")
            initialize(false);
        if (act == u"adds")
            addLeaf(u"d"_qs);
        QtAbstractComplexModule::onModuleInitializeRunning(running, init);
    }

private:
    void selfStep(const QString &name, bool init, const std::function<void()> &finished)
    {
        play.step(this, stepName(name, init), [this, finished](const QString &act) {
            if (act == u"fails")
                setInitFailed(true);
            finished();
        });
    }
};

} // namespace

class TestQtAbstractComplexModule : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void passes_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("journal");
        const auto row = [](const char *name, const char *script, const QString &journal) {
            QTest::newRow(name) << QString::fromLatin1(script) << journal;
        };
        const QString up = u"+up before a b c after -up "_qs;
        const QString failedUp = u"+up before a b c after -up! "_qs;
        const QString down = u"+down ~before ~c ~b ~a ~after -down"_qs;
        const QString untilB = u"+up before a b -up! +down ~before ~b ~a ~after -down"_qs;
        const QString again = u" +down -down"_qs;

        row("all at once", "", up + down);
        row("all later", "before=later a=later b=later c=later after=later ~a=later ~before=later",
            up + down);
        row("child fails", "b=fails", untilB);
        row("child fails later", "b=failslater", untilB);
        row("child wants exit", "b=exits", QString(untilB).remove(u'!'));
        row("fails before children", "before=fails",
            u"+up before -up! +down ~before ~after -down"_qs);
        row("fails after children", "after=fails", failedUp + down);
        row("take-down of a child fails", "~b=fails", up + down + u'!');
        row("child comes to it later", "a=later a.=adds",
            u"+up before a b c d after -up +down ~before ~d ~c ~b ~a ~after -down"_qs);
        row("the module has the last word on a child's end", "a.=never",
            u"+up before a -up! +down ~before ~a ~after -down"_qs);

        row("taken down while its first step waits", "before=never",
            u"+up before -up! +down ~before ~after -down"_qs);
        row("the first step's end comes during the take-down", "before=never ~before=never",
            u"+up before -up! +down ~before"_qs);
        row("taken down while a child waits", "b=never", untilB);
        row("taken down while its last step waits", "after=never", failedUp + down);
        row("taken down when the abandoned bring-up ends", "b=never -up!=takedown", untilB);

        row("taken down at the start", "+up=takedown",
            u"+up before -up! +down ~before ~after -down"_qs + again);
        row("taken down in its first step", "before=takedown",
            u"+up before -up! +down ~before ~after -down"_qs + again);
        row("taken down in a child", "b=takedown", untilB + again);
        row("taken down at a child's end", "b.=takedown", untilB + again);
        row("taken down in its last step", "after=takedown", failedUp + down + again);
    }

    void passes()
    {
        QFETCH(const QString, script);
        QFETCH(const QString, journal);
        Tree tree(script);
        tree.initialize(true);
        settle();
        const auto late = std::exchange(tree.play.unfinished, {});
        tree.initialize(false);
        for (const auto &end : late)
            end();
        settle();
        QCOMPARE(tree.takeJournal(), journal);
        QCOMPARE(tree.needExit(), script.contains(u"exits"));
        if (tree.isInitializeRunning(false) || tree.needExit())
            return;
        tree.play.script.clear();
        tree.initialize(true);
        QVERIFY2(!tree.isInitializeRunning(true) && !tree.initFailed(true), "up again");
    }

    void secondCallsAreHarmless()
    {
        const LogCapture log;
        Tree tree(u"a=later ~a=later"_qs);
        for (const bool init : {true, false}) {
            tree.initialize(init);
            tree.initialize(init);
            settle();
            tree.initialize(init);
        }
        QCOMPARE(tree.takeJournal(),
                 u"+up before a b c after -up +down ~before ~c ~b ~a ~after -down +down -down"_qs);
        QCOMPARE(log.texts().size(), 2);
        QVERIFY(log.texts().constFirst().startsWith(u"ASSERTION FAILED: module is down, "));
    }

    void childrenAreDestroyed()
    {
        Tree tree(u"c=never ~a=never"_qs);
        tree.initialize(true);
        tree.leaves.pop_back();
        settle();
        tree.leaves.pop_back();
        tree.initialize(false);
        tree.leaves.pop_back();
        settle();
        QCOMPARE(tree.takeJournal(), u"+up before a b c -up! +down ~before ~a ~after -down!"_qs);
    }

    /// With the child whose own late end led there.
    void destroyedByWhoeverHearsOfTheEnd()
    {
        auto tree = std::make_unique<Tree>(u"~a=later"_qs);
        connect(tree.get(), &QtAbstractModule::initializeRunning, this, [&](bool running, bool up) {
            if (!running && !up)
                tree.reset();
        });
        tree->initialize(true);
        tree->initialize(false);
        settle();
        QVERIFY(!tree);
    }
};

QTEST_GUILESS_MAIN(TestQtAbstractComplexModule)
#include "tst_qtabstractcomplexmodule.moc"
