#include "keystatewatcher.h"

KeyStateWatcher::KeyStateWatcher(int keyCode, QObject *parent) : QObject(parent), m_keyCode(keyCode)
{
}

bool KeyStateWatcher::isPressed(bool update)
{
    if (update)
        this->update();
    return m_pressed;
}

void KeyStateWatcher::update() { }

void KeyStateWatcher::setPressed(bool pressed)
{
    if (m_pressed == pressed)
        return;
    m_pressed = pressed;
    Q_EMIT changed();
}
