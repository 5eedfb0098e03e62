#include "qtabstractcomplexmodule.h"

#include "assertionlog.h"

QtAbstractComplexModule::QtAbstractComplexModule(QObject *parent) : QtAbstractModule(parent) { }

void QtAbstractComplexModule::initialize(bool init)
{
    if (init) {
        if (!checkOrLog(m_step == Step::Idle && m_begun == 0, "module is down"))
            return;
        beginPass(true);
        advance();
        return;
    }
    if (isInitializeRunning(false))
        return;
    if (isInitializeRunning(true)) {
        m_takeDownAsked = true;
        if (m_insideStep)
            return;
    } else {
        beginPass(false);
    }
    advance();
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
    if (!running)
        onStepFinished(Step::Children, init);
}

void QtAbstractComplexModule::addModule(QtAbstractModule *module) { m_modules.append(module); }

void QtAbstractComplexModule::clearModules()
{
    m_modules.clear();
    m_current.clear();
    m_begun = 0;
}

void QtAbstractComplexModule::beginPass(bool init)
{
    m_init = init;
    m_step = Step::SelfBefore;
    runStep([this, init] {
        setInitializeRunning(true, init);
        initializeSelfBefore(init);
    });
}

void QtAbstractComplexModule::endPass()
{
    m_current.clear();
    m_step = Step::Idle;
    setInitializeRunning(false, m_init);
}

void QtAbstractComplexModule::advance()
{
    while (m_step != Step::Idle) {
        if (m_takeDownAsked) {
            m_takeDownAsked = false;
            setInitFailed(true);
            endPass();
            // Whoever heard of the end may have started the take-down already.
            if (m_step == Step::Idle)
                beginPass(false);
            continue;
        }
        if (!m_stepFinished)
            return;
        m_stepFinished = false;
        startNextStep();
    }
}

void QtAbstractComplexModule::startNextStep()
{
    switch (m_step) {
    case Step::SelfBefore:
        m_step = Step::Children;
        startNextChild();
        break;
    case Step::Children:
        if (m_current && m_current->initFailed(m_init))
            setInitFailed(m_init);
        if (m_init && m_current && m_current->needExit())
            setNeedExit();
        if (m_init && (initFailed(true) || needExit()))
            endPass();
        else
            startNextChild();
        break;
    case Step::SelfAfter:
        endPass();
        break;
    case Step::Idle:
        break;
    }
}

void QtAbstractComplexModule::startNextChild()
{
    if (m_init ? m_begun < m_modules.size() : m_begun > 0) {
        m_current = m_modules.at(m_init ? m_begun++ : --m_begun);
        initializeChild(m_current);
        return;
    }
    m_current.clear();
    m_step = Step::SelfAfter;
    runStep([this] { initializeSelfAfter(m_init); });
}

void QtAbstractComplexModule::initializeChild(QtAbstractModule *module)
{
    if (!module) {
        m_stepFinished = true;
        return;
    }
    const bool init = m_init;
    // A child whose bring-up was abandoned still ends that pass; only the pass of now counts.
    disconnect(module, &QtAbstractModule::initializeRunning, this, nullptr);
    connect(module, &QtAbstractModule::initializeRunning, this,
            [this, module, init](bool running, bool childInit) {
                if (module == m_current && init == m_init && childInit == init)
                    onModuleInitializeRunning(running, childInit);
            });
    runStep([module, init] { module->initialize(init); });
}

void QtAbstractComplexModule::onStepFinished(Step step, bool init)
{
    if (m_step != step || m_init != init)
        return;
    m_stepFinished = true;
    if (!m_insideStep)
        advance();
}

template <typename Call> void QtAbstractComplexModule::runStep(Call call)
{
    m_stepFinished = false;
    m_insideStep = true;
    call();
    m_insideStep = false;
}
