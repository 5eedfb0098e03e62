#pragma once

#include "qtabstractmodule.h"

#include <QList>
#include <QPointer>

/**
 * A module made of others.
 *
 * Up: initializeSelfBefore(true), the children one after another in the order added, then
 * initializeSelfAfter(true). Down: initializeSelfBefore(false), the children that were brought up
 * in reverse order, then initializeSelfAfter(false). Each step may end later: the next begins when
 * onInitializeSelfBeforeFinished(), the child's own end of pass, or onInitializeSelfAfterFinished()
 * says so.
 *
 * A child that fails or asks to exit ends the bring-up with the same verdict; the children brought
 * up before it stay up until the take-down. A take-down that is asked for while a bring-up waits
 * for a step abandons that bring-up (it ends as failed) and starts at once; one that is asked for
 * from inside a step starts when that step's call returns.
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

    /// The module stays the caller's. It may be added while a bring-up is under way and is then
    /// brought up in its turn.
    void addModule(QtAbstractModule *module);
    void clearModules();
    /// The child that is being brought up or taken down now; null between children.
    QtAbstractModule *currentModule() const { return m_current; }

private:
    enum class Step { Idle, SelfBefore, Children, SelfAfter };

    void beginPass(bool init);
    void endPass();
    /// Walks on from step to step until one has to be waited for.
    void advance();
    void startNextStep();
    void startNextChild();
    void initializeChild(QtAbstractModule *module);
    void onStepFinished(Step step, bool init);
    template <typename Call> void runStep(Call call);

    QList<QPointer<QtAbstractModule>> m_modules;
    QPointer<QtAbstractModule> m_current;
    /// How many children's bring-up was begun; the take-down starts from there.
    qsizetype m_begun = 0;
    Step m_step = Step::Idle;
    bool m_init = false;
    bool m_insideStep = false;
    bool m_stepFinished = false;
    bool m_takeDownAsked = false;
};
