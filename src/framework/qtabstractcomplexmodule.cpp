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
    if (running || m_step != Step::Children || m_init != init)
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
        onStepFinished(Step::Children, m_init);
    }
}

void QtAbstractComplexModule::bringUp()
{
    if (!checkOrLog(m_step == Step::Idle && !m_needsTakeDown && !isInitializeRunning(false),
                    "module is down"))
        return;
    m_needsTakeDown = true;
    beginPass(true);
    advance();
}

void QtAbstractComplexModule::takeDown()
{
    if (isInitializeRunning(false))
        return;
    if (m_step != Step::Idle) {
        m_takeDownAsked = true;
    } else if (m_needsTakeDown) {
        beginPass(false);
    } else {
        setInitializeRunning(true, false);
        setInitializeRunning(false, false);
        return;
    }
    advance();
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
    letGoOfCurrent();
    m_step = Step::Idle;
    if (!m_init)
        m_needsTakeDown = false;
    // Last: whoever hears of it may start the next pass, or destroy the module.
    setInitializeRunning(false, m_init);
}

void QtAbstractComplexModule::abandonBringUp()
{
    m_takeDownAsked = false;
    setInitFailed(true);
    const QPointer<QtAbstractComplexModule> self(this);
    endPass();
    // Whoever heard of the end may have run the take-down already.
    if (self && m_step == Step::Idle && m_needsTakeDown) {
        beginPass(false);
        advance();
    }
}

void QtAbstractComplexModule::advance()
{
    while (m_step != Step::Idle && !m_insideStep) {
        if (m_takeDownAsked) {
            abandonBringUp();
            return;
        }
        if (!m_stepFinished)
            return;
        m_stepFinished = false;
        if (m_step == Step::SelfAfter || (m_init && (initFailed(true) || needExit()))) {
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
    while (m_init ? m_begun < m_modules.size() : m_begun > 0) {
        m_current = m_modules.at(m_init ? m_begun++ : --m_begun);
        if (m_current) {
            initializeCurrent();
            return;
        }
    }
    m_step = Step::SelfAfter;
    runStep([this] { initializeSelfAfter(m_init); });
}

void QtAbstractComplexModule::initializeCurrent()
{
    // Only the pass of now counts: a child whose bring-up is abandoned ends that one too.
    m_currentConnections[0] = connect(m_current, &QtAbstractModule::initializeRunning, this,
                                      [this](bool running, bool init) {
                                          if (init == m_init)
                                              onModuleInitializeRunning(running, init);
                                      });
    m_currentConnections[1] =
        connect(m_current, &QObject::destroyed, this, &QtAbstractComplexModule::onCurrentDestroyed);
    runStep([module = m_current.data(), init = m_init] { module->initialize(init); });
}

void QtAbstractComplexModule::letGoOfCurrent()
{
    for (const QMetaObject::Connection &connection : m_currentConnections)
        disconnect(connection);
    m_current.clear();
}

void QtAbstractComplexModule::onCurrentDestroyed()
{
    if (m_stepFinished)
        return;
    setInitFailed(m_init);
    onStepFinished(Step::Children, m_init);
}

void QtAbstractComplexModule::onStepFinished(Step step, bool init)
{
    if (m_step != step || m_init != init)
        return;
    m_stepFinished = true;
    // A step that ends inside its own call is followed up when that call returns. A later end is
    // followed up from the event loop: who reports it may be let go of by what comes next.
    if (!m_insideStep)
        QMetaObject::invokeMethod(
            this, [this] { advance(); }, Qt::QueuedConnection);
}

template <typename Call> void QtAbstractComplexModule::runStep(Call call)
{
    m_stepFinished = false;
    m_insideStep = true;
    call();
    m_insideStep = false;
}
