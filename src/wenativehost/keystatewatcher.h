#pragma once

#include <QObject>

/**
 * Whether one key of the keyboard is held.
 *
 * Where the keyboard's state cannot be read, as on Linux, the key never counts as held. Belongs to
 * one thread.
 */
class KeyStateWatcher : public QObject {
    Q_OBJECT
public:
    /// A virtual-key code, such as 45 for Insert.
    explicit KeyStateWatcher(int keyCode, QObject *parent = nullptr);

    int keyCode() const { return m_keyCode; }
    /// With update, samples the key first.
    bool isPressed(bool update);
    /// Samples the key. For a platform that can read the keyboard, an override calls setPressed()
    /// with the result; the default does nothing.
    virtual void update();

Q_SIGNALS:
    void changed();

protected:
    void setPressed(bool pressed);

private:
    const int m_keyCode;
    bool m_pressed = false;
};
