#pragma once

#include <QObject>

/// An on/off state with a change signal. Belongs to one thread.
class QtToggleSwitchObject : public QObject {
    Q_OBJECT
public:
    explicit QtToggleSwitchObject(bool on, QObject *parent = nullptr);

    bool isOn() const { return m_on; }
    void setOn(bool on);

Q_SIGNALS:
    void changed(bool on);

private:
    bool m_on;
};
