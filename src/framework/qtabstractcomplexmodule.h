#pragma once

#include "qtabstractmodule.h"

#include <QList>
#include <QPointer>

#include <array>

/**
 * A module that consists of child modules.
 *
 * Up: initializeSelfBefore(true), the children one after another in the order added, then
 * initializeSelfAfter(true). Down: initializeSelfBefore(false), the children whose bring-up had
 * begun, in reverse order, then initializeSelfAfter(false). Each step may be asynchronous: the next
 * one begins after onInitializeSelfBeforeFinished(), the end of the child's pass, or
 * onInitializeSelfAfterFinished(); if that comes after the step's call, from the event loop.
 *
 * A step that fails or requests the exit, a child's or the module's own, ends the bring-up with the
 * same result; a child that is destroyed during its pass has failed. The children that are already
 * up stay up until the take-down.
 *
 * A take-down that is requested while a bring-up waits for a step abandons that bring-up (it ends
 * as failed) and starts at once; one that is requested from inside a step starts when that step's
 * call returns. Taking down a module that is already down only marks the start and the end of the
 * pass. Only a module that is down can be brought up; otherwise the request is refused and logged
 * as a failed check.
 */
class QtAbstractComplexModule : public QtAbstractModule {
    Q_OBJECT
public:
    explicit QtAbstractComplexModule(QObject *parent = nullptr);

    void initialize(bool init) override;

protected:
    /// The module's own work before and after its children's; each override ends, then or later,
    /// with the matching on…Finished().
    virtual void initializeSelfBefore(bool init);
    virtual void initializeSelfAfter(bool init);
    /// A child's pass started or ended. An override ends with a call of this one, which continues.
    virtual void onModuleInitializeRunning(bool running, bool init);

    void onInitializeSelfBeforeFinished(bool init);
    void onInitializeSelfAfterFinished(bool init);

    /// The caller keeps the ownership. A child added during a bring-up is brought up in its turn,
    /// unless the module's own last step has begun.
    void addModule(QtAbstractModule *module);
    /// Forgets the children, whatever their state. A pass that waits for one of them continues.
    void clearModules();
    /// The child that is being brought up or taken down now; null between children.
    QtAbstractModule *currentModule() const { return m_current; }

private:
    enum class State {
        Down,
        GoingUp,
        /// Being brought up; the take-down starts as soon as the call of the current step returns.
        Abandoning,
        /// Or the bring-up failed: the children that are up have to be taken down.
        Up,
        GoingDown,
    };
    enum class Step { SelfBefore, Children, SelfAfter };
    enum class StepState {
        /// Inside its call.
        Called,
        /// Inside its call, and already finished.
        CalledAndFinished,
        Waiting,
        Finished,
    };

    bool isPassing() const { return isGoingUp() || m_state == State::GoingDown; }
    bool isGoingUp() const { return m_state == State::GoingUp || m_state == State::Abandoning; }
    bool isInsideStep() const
    {
        return m_stepState == StepState::Called || m_stepState == StepState::CalledAndFinished;
    }

    void bringUp();
    void takeDown();
    void beginPass(bool init);
    void endPass();
    void abandonBringUp();
    /// Runs the steps until one is asynchronous.
    void advance();
    void startNextChild();
    void initializeCurrent();
    void letGoOfCurrent();
    void onCurrentDestroyed();
    void onStepFinished(Step step, bool init);
    template <typename Call> void runStep(Call call);

    QList<QPointer<QtAbstractModule>> m_modules;
    QPointer<QtAbstractModule> m_current;
    std::array<QMetaObject::Connection, 2> m_currentConnections;
    /// How many children's bring-up was begun; the take-down starts from there.
    qsizetype m_begun = 0;
    State m_state = State::Down;
    /// Of the pass that is under way.
    Step m_step = Step::SelfBefore;
    StepState m_stepState = StepState::Waiting;
};
