#pragma once

#include <QObject>

/**
 * A part of the program that is brought up and taken down as one.
 *
 * initialize() runs one pass, up (init true) or down (init false). A pass starts with
 * setInitializeRunning(true, init) and ends, at once or any time later, with
 * setInitializeRunning(false, init). Belongs to one thread.
 */
class QtAbstractModule : public QObject {
    Q_OBJECT
public:
    explicit QtAbstractModule(QObject *parent = nullptr);

    /// Brings the module up (true) or takes it down (false). A take-down may come while a bring-up
    /// is still waiting for something; it then ends that bring-up.
    virtual void initialize(bool init) = 0;

    /// Whether a pass in that direction has started and not ended.
    bool isInitializeRunning(bool init) const { return pass(init).running; }
    /// Whether the last pass in that direction failed.
    bool initFailed(bool init) const { return pass(init).failed; }
    /// Whether the module requested the end of the process.
    bool needExit() const { return m_needExit; }

Q_SIGNALS:
    void initializeRunning(bool running, bool init);

protected:
    /// Marks the start or the end of a pass and emits the signal. A start clears the failure of the
    /// last pass in that direction.
    void setInitializeRunning(bool running, bool init);
    /// Marks the running pass as failed; call it before the end of the pass.
    void setInitFailed(bool init);
    /// Requests the end of the process; the parent module sees it when the pass ends.
    void setNeedExit();

private:
    struct Pass {
        bool running = false;
        bool failed = false;
    };
    const Pass &pass(bool init) const { return init ? m_up : m_down; }
    Pass &pass(bool init) { return init ? m_up : m_down; }

    Pass m_up;
    Pass m_down;
    bool m_needExit = false;
};
