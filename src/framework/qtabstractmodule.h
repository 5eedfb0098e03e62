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
    /// Whether the module asked the process to end.
    bool needExit() const { return m_needExit; }

Q_SIGNALS:
    void initializeRunning(bool running, bool init);

protected:
    /// Marks the start and the end of a pass and tells of it. A start forgets the failure of the
    /// last pass in that direction.
    void setInitializeRunning(bool running, bool init);
    /// Records that the running pass failed; to be called before it is marked as ended.
    void setInitFailed(bool init);
    /// Asks the process to end; the parent module sees it when the pass ends.
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
