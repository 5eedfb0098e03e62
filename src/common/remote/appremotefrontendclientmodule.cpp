#include "appremotefrontendclientmodule.h"

#include "appremotefrontendclientvhipcprocessor.h"
#include "appserverlauncher.h"
#include "assertionlog.h"
#include "enddeadline.h"
#include "qtabstractsocket.h"
#include "qtabstractsocketvhipc.h"
#include "qtabstractvhipcclienthelper.h"
#include "qtappdefaultlogger.h"
#include "qtobjectfactory.h"
#include "qtsocketconnectionkeeper.h"
#include "remoteincomingdownloadsprocessor.h"
#include "remotejsonrequestsmanager.h"

#include <QMetaObject>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <utility>

AppRemoteFrontendClientModule::AppRemoteFrontendClientModule(
    QSharedPointer<QtAbstractSocket> socket, IpcVersion ipcVersion, bool useCbor,
    QtAbstractServerAddress serverAddress,
    QSharedPointer<QtAppAbstractSettingsManager> settingsManager,
    QSharedPointer<UniqueInt64IdGen> idGen, bool launchServerAutomatically, QObject *parent,
    QtClock &clock)
    : QtAbstractModule(parent), m_socket(std::move(socket)), m_ipcVersion(ipcVersion),
      m_useCbor(useCbor), m_serverAddress(std::move(serverAddress)),
      m_settingsManager(std::move(settingsManager)), m_idGen(std::move(idGen)),
      m_launchServerAutomatically(launchServerAutomatically), m_clock(clock),
      m_answersTimer(clock.createTimer()), m_flushTimer(clock.createTimer())
{
    connect(m_socket.data(), &QtAbstractSocket::connectedStateChanged, this,
            &AppRemoteFrontendClientModule::connectedStateChanged);
    connect(m_socket.data(), &QtAbstractSocket::ioDeviceChanged, this,
            &AppRemoteFrontendClientModule::connectSocketIODevice);
    connectSocketIODevice();

    connect(m_answersTimer.get(), &QtSingleShotTimer::timeout, this,
            &AppRemoteFrontendClientModule::continueTakeDown);
    connect(m_flushTimer.get(), &QtSingleShotTimer::timeout, this,
            &AppRemoteFrontendClientModule::finishTakeDown);
    // Queued: the socket, which will be aborted, is still emitting its signal.
    connect(this, &AppRemoteFrontendClientModule::sentAllData, this,
            &AppRemoteFrontendClientModule::continueTakeDown, Qt::QueuedConnection);
    connect(m_socket.data(), &QtAbstractSocket::connectedStateChanged, this,
            &AppRemoteFrontendClientModule::continueTakeDown, Qt::QueuedConnection);
}

AppRemoteFrontendClientModule::~AppRemoteFrontendClientModule() = default;

bool AppRemoteFrontendClientModule::isConnected() const { return m_socket->isConnected(); }

QSharedPointer<AbstractIncomingDownloadsProcessor>
AppRemoteFrontendClientModule::incomingDownloadsProcessor() const
{
    return m_incomingDownloadsProcessor;
}

QSharedPointer<AbstractJsonRequestsManager>
AppRemoteFrontendClientModule::jsonRequestsManager() const
{
    return m_jsonRequestsManager;
}

QSharedPointer<AppRemoteFrontendClientVhIpcProcessor>
AppRemoteFrontendClientModule::vhIpcProcessor() const
{
    return m_vhIpcProcessor;
}

void AppRemoteFrontendClientModule::initialize(bool init)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, init] { initialize(init); }, Qt::QueuedConnection);
        return;
    }
    if (init)
        bringUp();
    else
        takeDown();
}

void AppRemoteFrontendClientModule::bringUp()
{
    if (!checkOrLog(!m_helper, "module is down"))
        return;
    setInitializeRunning(true, true);

    m_incomingDownloadsProcessor = qtCreateObject<RemoteIncomingDownloadsProcessor>(m_idGen);
    m_jsonRequestsManager = qtCreateObject<RemoteJsonRequestsManager>(m_idGen);
    m_vhIpcProcessor = qtCreateObject<AppRemoteFrontendClientVhIpcProcessor>(
        m_settingsManager, m_incomingDownloadsProcessor, m_jsonRequestsManager, nullptr, m_clock);
    m_vhIpc =
        qtCreateObject<QtAbstractSocketVhIpc>(m_socket, m_vhIpcProcessor, m_ipcVersion, m_useCbor);
    if (m_launchServerAutomatically)
        m_launcher = qtCreateObject<AppServerLauncher>(false);
    m_keeper = qtCreateObject<QtSocketConnectionKeeper>(m_socket, nullptr, m_clock);
    m_keeper->setServerAddress(m_serverAddress);
    m_helper = qtCreateObject<QtAbstractVhIpcClientHelper>(m_socket, m_keeper, m_launcher, m_vhIpc,
                                                           nullptr, m_clock);
    m_helper->enable(true);

    setInitializeRunning(false, true);
}

void AppRemoteFrontendClientModule::takeDown()
{
    if (isInitializeRunning(false))
        return;
    setInitializeRunning(true, false);
    if (m_helper) {
        connect(m_incomingDownloadsProcessor.data(), &RemoteIncomingDownloadsProcessor::finished,
                this, &AppRemoteFrontendClientModule::continueTakeDown, Qt::QueuedConnection);
        connect(m_vhIpcProcessor.data(), &QtAbstractVhIpcPart::requiringServerChanged, this,
                &AppRemoteFrontendClientModule::continueTakeDown, Qt::QueuedConnection);
        handOverQueued();
    }
    continueTakeDown();
}

void AppRemoteFrontendClientModule::handOverQueued()
{
    m_vhIpcProcessor->dropQueuedEndingWithProcess();
    const QList<VhIpcQueuedMessage> queued = m_vhIpcProcessor->queued();
    m_isHolding = !queued.isEmpty() && m_handOver && !m_handOver(queued);
    if (!m_isHolding) {
        m_vhIpcProcessor->dropQueued();
        return;
    }
    logLine(1,
            QStringLiteral("[AppRemoteFrontendClientModule]: ends when the application has got %1 "
                           "waiting messages")
                .arg(queued.size()));
}

void AppRemoteFrontendClientModule::continueTakeDown()
{
    if (!isInitializeRunning(false) || (m_vhIpcProcessor && m_vhIpcProcessor->hasQueued()))
        return;
    if (m_helper)
        m_helper->enable(false);
    if (!isAnythingUnderWay()) {
        finishTakeDown();
        return;
    }
    if (!m_flushTimer->isActive()) {
        const auto limited = [this](int ms) {
            const std::chrono::milliseconds wait(ms);
            return m_isHolding
                ? ms + extraHoldMs
                : std::max(minWaitMs, static_cast<int>(EndDeadline::limited(wait, wait).count()));
        };
        m_answersTimer->start(limited(answersTimeoutMs));
        m_flushTimer->start(limited(flushTimeoutMs));
    }
    const bool isWaitingForAnswers =
        m_vhIpcProcessor->awaitsAnswers() && m_answersTimer->isActive();
    // The peer closes the connection once it has read everything.
    if (!isWaitingForAnswers && !isWriting())
        m_socket->closeSending();
}

void AppRemoteFrontendClientModule::finishTakeDown()
{
    m_answersTimer->stop();
    m_flushTimer->stop();
    if (isAnythingUnderWay())
        logLine(1,
                QStringLiteral("[AppRemoteFrontendClientModule]: WARNING: the end cuts off the "
                               "application, which did not read or answer everything in time"));
    m_socket->abort();

    m_helper.reset();
    m_keeper.reset();
    m_launcher.reset();
    m_vhIpc.reset();
    m_vhIpcProcessor.reset();
    m_jsonRequestsManager.reset();
    m_incomingDownloadsProcessor.reset();

    setInitializeRunning(false, false);
}

bool AppRemoteFrontendClientModule::isWriting() const
{
    return m_device && m_device->bytesToWrite() > 0;
}

bool AppRemoteFrontendClientModule::isAnythingUnderWay() const
{
    return m_socket->isConnected()
        && (isWriting() || !m_socket->hasPeerTakenAll()
            || (m_vhIpcProcessor && m_vhIpcProcessor->awaitsAnswers()));
}

void AppRemoteFrontendClientModule::connectSocketIODevice()
{
    if (m_device)
        disconnect(m_device, &QIODevice::bytesWritten, this,
                   &AppRemoteFrontendClientModule::onSocketBytesWritten);
    m_device = m_socket->ioDevice();
    if (m_device)
        connect(m_device, &QIODevice::bytesWritten, this,
                &AppRemoteFrontendClientModule::onSocketBytesWritten);
}

void AppRemoteFrontendClientModule::onSocketBytesWritten(qint64)
{
    if (m_device && m_device->bytesToWrite() == 0)
        Q_EMIT sentAllData();
}
