#include "kovtransferfactory.h"

#include "dmcoresettings.h"
#include "kovdownloadfolder.h"
#include "kovfiletransfer.h"
#include "kovnetworkpool.h"
#include "kovspeedlimit.h"
#include "kovstreamtransfer.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappportablemodesupport.h"
#include "systemdefaultdownloadlocation.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr int defaultMaxRunning = 8;
/// Connections for one file.
constexpr int defaultMaxConnections = 4;

} // namespace

KovTransferFactory::KovTransferFactory(QSharedPointer<QtAppAbstractSettingsManager> settings,
                                       QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                                       QtClock &clock)
    : m_settings(std::move(settings)), m_portableModeSupport(std::move(portableModeSupport)),
      m_clock(clock), m_network(QSharedPointer<KovNetworkPool>::create()),
      m_speedLimit(QSharedPointer<KovSpeedLimit>::create(clock))
{
}

KovTransferFactory::~KovTransferFactory() = default;

KovTransfer *KovTransferFactory::create(const KovJob &job, const KovDownloadRequest &request,
                                        QObject *parent)
{
    updateSpeedLimit();
    const qint64 connections =
        number(toString(DmCoreSettings::MaxConnectionsPerServer), defaultMaxConnections);
    const KovTransfer::Environment environment{
        m_network, m_speedLimit,
        folder(job.partialPath.isEmpty() ? folderPath() : QFileInfo(job.partialPath).path()),
        static_cast<int>(std::min<qint64>(connections, KovNetworkPool::maxManagers)),
        m_settings->value(toString(DmCoreSettings::TakeLastModifiedDateFromServer)) == u"1"};
    if (request.isStream)
        return new KovStreamTransfer(job, request, environment, parent, m_clock);
    return new KovFileTransfer(job, request, environment, parent, m_clock);
}

QString KovTransferFactory::folderPath() const
{
    QString path = m_settings->value(toString(DmCoreSettings::DefaultDownloadPath));
    if (m_portableModeSupport)
        path = m_portableModeSupport->decodePath(path);
    return path.isEmpty() ? systemDefaultDownloadLocation() : path;
}

qint64 KovTransferFactory::maxRunning() const
{
    return number(toString(DmCoreSettings::MaxDownloads), defaultMaxRunning);
}

bool KovTransferFactory::triesAgain() const
{
    return m_settings->value(toString(DmCoreSettings::AutoRetryFailedDownloads)) != u"0";
}

void KovTransferFactory::updateSpeedLimit()
{
    m_speedLimit->setBytesPerSecond(number(toString(DmCoreSettings::MaxDownloadSpeed), 0));
}

std::shared_ptr<KovDownloadFolder> KovTransferFactory::folder(const QString &path)
{
    const QString suffix = m_settings->value(toString(DmCoreSettings::PartialDownloadFileSuffix));
    std::shared_ptr<KovDownloadFolder> &folder = m_folders[path];
    if (!folder || folder->partialSuffix() != suffix)
        folder = std::make_shared<KovDownloadFolder>(path, suffix);
    return folder;
}

qint64 KovTransferFactory::number(const QString &setting, qint64 otherwise) const
{
    const qint64 value = m_settings->value(setting).toLongLong();
    return value > 0 ? value : otherwise;
}
