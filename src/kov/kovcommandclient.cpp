#include "kovcommandclient.h"

#include "appservername.h"
#include "kovcommandclientpart.h"
#include "qtabstractserveraddress.h"
#include "qtabstractsocketvhipc.h"
#include "qtlocalsocket.h"

#include <unistd.h>

#include <utility>

namespace {

constexpr int failureExitCode = 1;

} // namespace

KovCommandClient::KovCommandClient(QObject *parent, QtClock &clock)
    : QObject(parent), m_socket(QSharedPointer<QtLocalSocket>::create()),
      m_part(QSharedPointer<KovCommandClientPart>::create()),
      m_vhIpc(QSharedPointer<QtAbstractSocketVhIpc>::create(m_socket, m_part, appLinkVersion,
                                                            appLinkUsesCbor)),
      m_timer(clock.createTimer())
{
    m_socket->setRequiredServerUser(::getuid());
    connect(m_part.data(), &KovCommandClientPart::done, this, &KovCommandClient::finish);
    connect(m_socket.data(), &QtLocalSocket::connectedStateChanged, this, [this](bool connected) {
        if (connected)
            m_part->sendCommand(m_arguments);
        else
            finish(failureExitCode, QStringLiteral("kov ended before it answered\n"));
    });
    connect(m_socket.data(), &QtLocalSocket::errorOccurred, this, [this] {
        if (!m_socket->isConnected())
            finish(failureExitCode, QStringLiteral("kov is not running\n"));
    });
    connect(m_timer.get(), &QtSingleShotTimer::timeout, this,
            [this] { finish(failureExitCode, QStringLiteral("kov does not answer\n")); });
}

KovCommandClient::~KovCommandClient() = default;

void KovCommandClient::run(const QString &serverName, const QStringList &arguments)
{
    m_arguments = arguments;
    m_timer->start(answerWithinMs);
    m_socket->connectToServer(QtAbstractServerAddress(serverName), QIODeviceBase::ReadWrite);
}

void KovCommandClient::finish(int exitCode, const QString &output)
{
    if (!std::exchange(m_finished, true))
        Q_EMIT finished(exitCode, output);
}
