#include "qttoggleswitchobject.h"

QtToggleSwitchObject::QtToggleSwitchObject(bool on, QObject *parent) : QObject(parent), m_on(on) { }

void QtToggleSwitchObject::setOn(bool on)
{
    if (m_on == on)
        return;
    m_on = on;
    Q_EMIT changed(on);
}
