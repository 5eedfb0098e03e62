#pragma once

#include "abstracterror.h"
#include "qtclock.h"

#include <QObject>
#include <QSharedPointer>

#include <memory>

class QtAbstractServerLauncher;
class QtAbstractSocket;
class QtAutomaticServerLauncher;
class QtSocketConnectionKeeper;

/// Enables and disables the connection keeper and the automatic server launcher of a link together.
/// Belongs to the socket's thread.
class QtAbstractRemoteClientHelper : public QObject {
    Q_OBJECT
public:
    /// Keeper and launcher may be null.
    QtAbstractRemoteClientHelper(QSharedPointer<QtAbstractSocket> socket,
                                 QSharedPointer<QtSocketConnectionKeeper> keeper,
                                 const QSharedPointer<QtAbstractServerLauncher> &launcher,
                                 QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~QtAbstractRemoteClientHelper() override;

    void enable(bool enable);
    bool isEnabled() const { return m_enabled; }
    /// The launcher is enabled while this and the helper itself are.
    void enableAutomaticServerLauncher(bool enable);
    bool isAutomaticServerLauncherSupported() const { return m_automaticLauncher != nullptr; }
    void applyEnabled();
    void forceConnect();

private Q_SLOTS:
    void onLaunchServerFinished(const AbstractError &error);

private:
    const QSharedPointer<QtAbstractSocket> m_socket;
    const QSharedPointer<QtSocketConnectionKeeper> m_keeper;
    const std::unique_ptr<QtAutomaticServerLauncher> m_automaticLauncher;
    bool m_enabled = false;
    bool m_automaticServerLauncherEnabled = false;
};
