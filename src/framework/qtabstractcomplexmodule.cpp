#include "qtabstractcomplexmodule.h"

#include "assertionlog.h"

QtAbstractComplexModule::QtAbstractComplexModule(QObject *parent) : QtAbstractModule(parent) { }

void QtAbstractComplexModule::initialize(bool init)
{
    if (init)
        bringUp();
    else
        takeDown();
}

void QtAbstractComplexModule::initializeSelfBefore(bool init)
{
    onInitializeSelfBeforeFinished(init);
}

void QtAbstractComplexModule::initializeSelfAfter(bool init)
{
    onInitializeSelfAfterFinished(init);
}

void QtAbstractComplexModule::onInitializeSelfBeforeFinished(bool init)
{
    onStepFinished(Step::SelfBefore, init);
}

void QtAbstractComplexModule::onInitializeSelfAfterFinished(bool init)
{
    onStepFinished(Step::SelfAfter, init);
}

void QtAbstractComplexModule::onModuleInitializeRunning(bool running, bool init)
{
    if (running || !isPassing() || m_step != Step::Children || isGoingUp() != init)
        return;
    if (m_current && m_current->initFailed(init))
        setInitFailed(init);
    if (m_current && init && m_current->needExit())
        setNeedExit();
    onStepFinished(Step::Children, init);
}

void QtAbstractComplexModule::addModule(QtAbstractModule *module)
{
    if (checkOrLog(module && !m_modules.contains(module), "module is new"))
        m_modules.append(module);
}

void QtAbstractComplexModule::clearModules()
{
    m_modules.clear();
    m_begun = 0;
    if (m_current) {
        letGoOfCurrent();
        onStepFinished(Step::Children, isGoingUp());
    }
}

void QtAbstractComplexModule::bringUp()
{
    if (!checkOrLog(m_state == State::Down && !isInitializeRunning(false), "module is down"))
        return;
    beginPass(true);
    advance();
}

void QtAbstractComplexModule::takeDown()
{
    if (isInitializeRunning(false))
        return;
    if (m_state == State::Down) {
        setInitializeRunning(true, false);
        setInitializeRunning(false, false);
        return;
    }
    if (isGoingUp())
        m_state = State::Abandoning;
    else
        beginPass(false);
    advance();
}

void QtAbstractComplexModule::beginPass(bool init)
{
    m_state = init ? State::GoingUp : State::GoingDown;
    m_step = Step::SelfBefore;
    runStep([this, init] {
        setInitializeRunning(true, init);
        initializeSelfBefore(init);
    });
}

void QtAbstractComplexModule::endPass()
{
    letGoOfCurrent();
    const bool init = isGoingUp();
    m_state = init ? State::Up : State::Down;
    // Last: reentrancy. A slot may start the next pass, or destroy the module.
    setInitializeRunning(false, init);
}

void QtAbstractComplexModule::abandonBringUp()
{
    setInitFailed(true);
    const QPointer<QtAbstractComplexModule> self(this);
    endPass();
    // Reentrancy: a slot may have run the take-down already.
    if (self && m_state == State::Up) {
        beginPass(false);
        advance();
    }
}

void QtAbstractComplexModule::advance()
{
    while (isPassing() && !isInsideStep()) {
        if (m_state == State::Abandoning) {
            abandonBringUp();
            return;
        }
        if (m_stepState != StepState::Finished)
            return;
        m_stepState = StepState::Waiting;
        if (m_step == Step::SelfAfter || (isGoingUp() && (initFailed(true) || needExit()))) {
            endPass();
            return;
        }
        startNextChild();
    }
}

void QtAbstractComplexModule::startNextChild()
{
    letGoOfCurrent();
    m_step = Step::Children;
    const bool init = isGoingUp();
    while (init ? m_begun < m_modules.size() : m_begun > 0) {
        m_current = m_modules.at(init ? m_begun++ : --m_begun);
        if (m_current) {
            initializeCurrent();
            return;
        }
    }
    m_step = Step::SelfAfter;
    runStep([this, init] { initializeSelfAfter(init); });
}

void QtAbstractComplexModule::initializeCurrent()
{
    // Only the current pass counts: a child whose bring-up is abandoned also ends that pass.
    m_currentConnections[0] = connect(m_current, &QtAbstractModule::initializeRunning, this,
                                      [this](bool running, bool init) {
                                          if (init == isGoingUp())
                                              onModuleInitializeRunning(running, init);
                                      });
    m_currentConnections[1] =
        connect(m_current, &QObject::destroyed, this, &QtAbstractComplexModule::onCurrentDestroyed);
    runStep([module = m_current.data(), init = isGoingUp()] { module->initialize(init); });
}

void QtAbstractComplexModule::letGoOfCurrent()
{
    for (const QMetaObject::Connection &connection : m_currentConnections)
        disconnect(connection);
    m_current.clear();
}

void QtAbstractComplexModule::onCurrentDestroyed()
{
    if (m_stepState == StepState::CalledAndFinished || m_stepState == StepState::Finished)
        return;
    setInitFailed(isGoingUp());
    onStepFinished(Step::Children, isGoingUp());
}

void QtAbstractComplexModule::onStepFinished(Step step, bool init)
{
    if (!isPassing() || m_step != step || isGoingUp() != init)
        return;
    // After a step that ends inside its own call, the next one starts when that call returns. After
    // a later end, the event loop starts it, since it may destroy the object that reports the end.
    if (isInsideStep()) {
        m_stepState = StepState::CalledAndFinished;
        return;
    }
    m_stepState = StepState::Finished;
    QMetaObject::invokeMethod(
        this, [this] { advance(); }, Qt::QueuedConnection);
}

template <typename Call> void QtAbstractComplexModule::runStep(Call call)
{
    m_stepState = StepState::Called;
    call();
    m_stepState =
        m_stepState == StepState::CalledAndFinished ? StepState::Finished : StepState::Waiting;
}
