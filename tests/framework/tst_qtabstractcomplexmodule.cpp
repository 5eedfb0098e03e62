#include "logcapture.h"
#include "qtabstractcomplexmodule.h"
#include "qtobjectfactory.h"
#include "qttoggleswitchobject.h"
#include "rows.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

/// Delivers all queued calls.
void settle()
{
    for (int i = 0; i < 30; ++i)
        QCoreApplication::processEvents();
}

/// The log of the steps, in order, and the script of their behaviour: "later" and "never" say when
/// a step ends, "fails", "failslater" and "exits" how, "takedown" requests the take-down inside it.
struct Play {
    QStringList journal;
    QHash<QString, QString> script;
    QtAbstractModule *top = nullptr;
    std::vector<std::function<void()>> unfinished;

    /// A step that is "later" waits in the owner's event queue.
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
            if (isInitializeRunning(init))
                setInitializeRunning(false, init);
        });
    }

private:
    Play *m_play;
};

class Tree : public QtAbstractComplexModule {
public:
    /// The script consists of "STEP=ACT"; steps of the take-down begin with "~", the ends of passes
    /// are "-up" and "-down", with "!" if failed.
    explicit Tree(const QString &script = {})
    {
        play.top = this;
        for (const QString &part : script.split(u' ', Qt::SkipEmptyParts))
            play.script.insert(part.section(u'=', 0, 0), part.section(u'=', 1));
        for (const QString &name : {u"a"_qs, u"b"_qs, u"c"_qs}) {
            leaves.push_back(std::make_unique<Leaf>(name, &play));
            addModule(leaves.back().get());
        }
        connect(this, &QtAbstractModule::initializeRunning, this, [this](bool running, bool init) {
            const QString what = (running ? u"+"_qs : u"-"_qs) + (init ? u"up"_qs : u"down"_qs);
            const bool failed = !running && initFailed(init);
            play.step(this, failed ? what + u'!' : what, [](const QString &) {});
        });
    }

    using QtAbstractComplexModule::addModule;
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
        const Rows<QString, QString> row("script", "journal");
        const QString up = u"+up before a b c after -up "_qs;
        const QString failedUp = u"+up before a b c after -up! "_qs;
        const QString down = u"+down ~before ~c ~b ~a ~after -down"_qs;
        const QString untilB = u"+up before a b -up! +down ~before ~b ~a ~after -down"_qs;
        const QString neverUp = u"+up before -up! +down ~before ~after -down"_qs;
        const QString again = u" +down -down"_qs;

        row("all at once", {}, up + down);
        row("all later",
            u"before=later a=later b=later c=later after=later ~a=later ~before=later"_qs,
            up + down);
        row("child fails", u"b=fails"_qs, untilB);
        row("child fails later", u"b=failslater"_qs, untilB);
        row("child wants exit", u"b=exits"_qs, QString(untilB).remove(u'!'));
        row("fails before children", u"before=fails"_qs, neverUp);
        row("fails after children", u"after=fails"_qs, failedUp + down);
        row("take-down of a child fails", u"~b=fails"_qs, up + down + u'!');

        row("the first step's end comes during the take-down", u"before=never ~before=never"_qs,
            u"+up before -up! +down ~before"_qs);
        row("taken down while a child waits", u"b=never"_qs, untilB);
        row("taken down while its last step waits", u"after=never"_qs, failedUp + down);
        row("taken down when the abandoned bring-up ends", u"b=never -up!=takedown"_qs, untilB);

        row("taken down at the start", u"+up=takedown"_qs, neverUp + again);
        row("taken down in a child", u"b=takedown"_qs, untilB + again);
        row("taken down in its last step", u"after=takedown"_qs, failedUp + down + again);
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

        const LogCapture log;
        tree.initialize(true);
        tree.initialize(true);
        QVERIFY(log.texts().constFirst().startsWith(u"ASSERTION FAILED: module is down, "));

        // After its end has been reported, but before the event loop starts the next step.
        Tree other(u"a=never"_qs);
        other.initialize(true);
        other.play.unfinished.front()();
        other.leaves.erase(other.leaves.begin());
        settle();
        QCOMPARE(other.takeJournal(), u"+up before a b c after -up"_qs);
        QVERIFY(!other.initFailed(true));
        other.addModule(other.leaves.front().get());
        other.addModule(nullptr);
        QCOMPARE(log.texts().filter(u"ASSERTION FAILED: module is new, "_qs).size(), 2);
    }

    void logsWhatIsAliveAtExit()
    {
        const LogCapture log;
        auto tracker = std::make_unique<QtQObjectsTracker>();
        const auto leaked = qtCreateObject<QtToggleSwitchObject>(true);
        qtCreateObject<QTimer>();
        tracker.reset();
        QCOMPARE(log.texts(),
                 QStringList(u"[QtQObjectsTracker]: WARNING: still alive at exit: "
                             "QtToggleSwitchObject"_qs));
        QVERIFY(qtCreateObject<QtToggleSwitchObject>(true));
    }
};

QTEST_GUILESS_MAIN(TestQtAbstractComplexModule)
#include "tst_qtabstractcomplexmodule.moc"
