#include "kovcommandclient.h"

#include "applink.h"
#include "kovcommandclientpart.h"
#include "kovcommandline.h"
#include "qtabstractserveraddress.h"
#include "qtabstractsocketvhipc.h"
#include "qtlocalsocket.h"

#include <utility>

KovCommandClient::KovCommandClient(QObject *parent, QtClock &clock)
    : QObject(parent), m_socket(createAppClientSocket()),
      m_part(QSharedPointer<KovCommandClientPart>::create()),
      m_vhIpc(createAppLink(m_socket, m_part)), m_timer(clock.createTimer())
{
    connect(m_part.data(), &KovCommandClientPart::done, this, &KovCommandClient::finish);
    connect(m_socket.data(), &QtLocalSocket::connectedStateChanged, this, [this](bool connected) {
        if (connected)
            m_part->sendCommand(m_words);
        else if (std::exchange(m_running, false))
            Q_EMIT ended();
    });
    connect(m_socket.data(), &QtLocalSocket::errorOccurred, this, [this] {
        if (!m_socket->isConnected() && std::exchange(m_running, false))
            Q_EMIT notRunning();
    });
    connect(m_timer.get(), &QtSingleShotTimer::timeout, this, [this] {
        finish(KovCommandLine::failureExitCode,
               QStringLiteral("kov: the service does not answer\n"));
    });
}

KovCommandClient::~KovCommandClient() = default;

void KovCommandClient::run(const QString &serverName, const QStringList &words)
{
    m_words = words;
    m_running = true;
    m_timer->start(answerTimeoutMs);
    if (m_socket->isConnected())
        m_part->sendCommand(m_words);
    else
        m_socket->connectToServer(QtAbstractServerAddress(serverName), QIODeviceBase::ReadWrite);
}

void KovCommandClient::finish(int exitCode, const QString &output)
{
    m_timer->stop();
    if (std::exchange(m_running, false))
        Q_EMIT finished(exitCode, output);
}
