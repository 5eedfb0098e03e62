#pragma once

#include "qtabstractcomplexmodule.h"

#include <QPointer>
#include <QSharedPointer>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <utility>
#include <vector>

/// How a step ends.
enum class End { AtOnce, Later, Never, Failed, FailedLater, WantsExit };

using Journal = QStringList;

/// A module without children that writes down what is asked of it.
class Leaf : public QtAbstractModule {
public:
    Leaf(const QString &name, End up, Journal *journal) : m_up(up), m_journal(journal)
    {
        setObjectName(name);
    }

    void initialize(bool init) override
    {
        m_journal->append(objectName() + (init ? QStringLiteral(" up") : QStringLiteral(" down")));
        if (!init && isInitializeRunning(true))
            setInitializeRunning(false, true);
        setInitializeRunning(true, init);
        if (onPass)
            onPass(init);
        const End end = init ? m_up : down;
        if (end == End::Never)
            return;
        if (end == End::Later || end == End::FailedLater)
            QTimer::singleShot(0, this, [this, init, end] { finish(init, end); });
        else
            finish(init, end);
    }

    void finish(bool init, End end)
    {
        if (!isInitializeRunning(init))
            return;
        if (end == End::Failed || end == End::FailedLater)
            setInitFailed(init);
        if (end == End::WantsExit)
            setNeedExit();
        const QPointer<Leaf> self(this);
        Journal *const journal = m_journal;
        setInitializeRunning(false, init);
        if (!self)
            journal->append(QStringLiteral("released while it reported"));
    }

    End down = End::AtOnce;
    std::function<void(bool)> onPass;

private:
    End m_up;
    Journal *m_journal;
};

/// A module with children that writes down its own steps and those of its children.
class Tree : public QtAbstractComplexModule {
public:
    using QtAbstractComplexModule::addModule;
    using QtAbstractComplexModule::clearModules;
    using QtAbstractComplexModule::currentModule;
    using QtAbstractComplexModule::onInitializeSelfBeforeFinished;

    Leaf *addLeaf(const QString &name, End up = End::AtOnce)
    {
        leaves.push_back(QSharedPointer<Leaf>::create(name, up, &journal));
        addModule(leaves.back().data());
        return leaves.back().data();
    }

    Journal takeJournal() { return std::exchange(journal, {}); }

    Journal journal;
    std::vector<QSharedPointer<Leaf>> leaves;
    End before = End::AtOnce;
    End after = End::AtOnce;
    std::function<void(bool)> insideBefore;
    std::function<void(bool)> insideAfter;
    std::function<void(bool, bool)> onChild;

protected:
    void initializeSelfBefore(bool init) override
    {
        step(QStringLiteral("before"), init, before, insideBefore,
             [this, init] { onInitializeSelfBeforeFinished(init); });
    }
    void initializeSelfAfter(bool init) override
    {
        step(QStringLiteral("after"), init, after, insideAfter,
             [this, init] { onInitializeSelfAfterFinished(init); });
    }
    void onModuleInitializeRunning(bool running, bool init) override
    {
        if (onChild)
            onChild(running, init);
        QtAbstractComplexModule::onModuleInitializeRunning(running, init);
    }

private:
    void step(const QString &name, bool init, End end, const std::function<void(bool)> &inside,
              const std::function<void()> &finished)
    {
        journal.append(name + (init ? QStringLiteral(" up") : QStringLiteral(" down")));
        if (inside)
            inside(init);
        if (init && end == End::Failed)
            setInitFailed(true);
        if (init && end == End::WantsExit)
            setNeedExit();
        if (end == End::Later)
            QTimer::singleShot(0, this, finished);
        else if (end != End::Never)
            finished();
    }
};

/// What the signal said: "+up", "-up", "+down", "-down".
class PassSpy {
public:
    explicit PassSpy(QtAbstractModule *module)
    {
        QObject::connect(module, &QtAbstractModule::initializeRunning, &m_context,
                         [this](bool running, bool init) {
                             seen.append((running ? QStringLiteral("+") : QStringLiteral("-"))
                                         + (init ? QStringLiteral("up") : QStringLiteral("down")));
                         });
    }
    QStringList seen;

private:
    QObject m_context;
};

/// "a, b" as a list.
inline QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}
