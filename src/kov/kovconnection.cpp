#include "kovconnection.h"

#include "applink.h"
#include "kovcommandmessages.h"
#include "kovcommandspart.h"
#include "kovincomingdownloadspart.h"
#include "kovsettingsbridge.h"
#include "qtabstractsocketvhipc.h"
#include "qtappdefaultlogger.h"
#include "qtlocalsocket.h"
#include "qtvhipccompositepart.h"
#include "remotejsonrequestsmanager.h"
#include "uniqueint64idgen.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipcjsonrequests.h"
#include "vhipckeys.h"
#include "vhipcmisctasksclient.h"
#include "vhipcsettings.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QVariant>

namespace {

/// Clients are sent all changes, and their own changes are accepted.
constexpr quint32 settingsFlags = VhIpcSettings::ApplyChanged | VhIpcSettings::ApplyReset
    | VhIpcSettings::SendChanged | VhIpcSettings::SendAllOnAllValuesChanged
    | VhIpcSettings::SendReset;

/// The application's end of "miscTasks". The service has no window to activate; it only logs this.
class KovMiscTasksPart : public QtAbstractVhIpcPart {
public:
    void processVh(const QHash<QString, QVariant> &map) override
    {
        if (map.value(VhIpcKeys::reason()).toString() == u"activateMainWindow")
            logLine(1, QStringLiteral("[KovMiscTasksPart]: asked to activate the main window"));
    }
};

QSharedPointer<QtVhIpcCompositePart>
createParts(const KovConnection::Services &services,
            const QSharedPointer<RemoteJsonRequestsManager> &jsonRequests)
{
    auto parts = QSharedPointer<QtVhIpcCompositePart>::create(nullptr, nullptr);
    const auto add = [&parts](const QString &name, QtAbstractVhIpcPart *part) {
        parts->addPart(name, QSharedPointer<QtAbstractVhIpcPart>(part), false, false);
    };
    add(VhIpcSettings::partName(),
        new VhIpcSettings(QSharedPointer<KovSettingsBridge>::create(services.settings),
                          settingsFlags, {}));
    add(VhIpcIncomingDownloadsKeys::partName(), new KovIncomingDownloadsPart(services.queue));
    add(VhIpcJsonRequests::partName(), new VhIpcJsonRequests(jsonRequests));
    add(VhIpcMiscTasksClient::partName(), new KovMiscTasksPart);
    add(KovCommandMessages::partName(), new KovCommandsPart(services.commands));
    return parts;
}

/// The answer to a JSON request: a JSON object that contains the text of the request as a string,
/// so that it is preserved whether or not it is valid JSON.
QString jsonEcho(const QString &request)
{
    const QJsonObject echo{{QStringLiteral("from"), QStringLiteral("kov")},
                           {QStringLiteral("kind"), QStringLiteral("echo")},
                           {QStringLiteral("request"), request}};
    return QString::fromUtf8(QJsonDocument(echo).toJson(QJsonDocument::Compact));
}

} // namespace

KovConnection::KovConnection(const QSharedPointer<QLocalSocket> &socket, const Services &services,
                             QObject *parent)
    : QObject(parent), m_socket(QSharedPointer<QtLocalSocket>::create(socket)),
      m_jsonRequests(QSharedPointer<RemoteJsonRequestsManager>::create(
          QSharedPointer<UniqueInt64IdGen>::create())),
      m_parts(createParts(services, m_jsonRequests)), m_vhIpc(createAppLink(m_socket, m_parts))
{
    connect(m_jsonRequests.data(), &RemoteJsonRequestsManager::received, this,
            [this](qint64 id, const QString &json, bool isRequest) {
                if (!isRequest)
                    return;
                logLine(1, QStringLiteral("[KovConnection]: JSON request %1").arg(id));
                m_jsonRequests->send(id, jsonEcho(json), false);
            });
    connect(m_socket.data(), &QtLocalSocket::connectedStateChanged, this, [this](bool connected) {
        if (!connected)
            Q_EMIT disconnected();
    });
}

void KovConnection::disconnectFromClient() { m_socket->disconnectFromHost(); }
