#include "applicationend.h"

#include "abstractnewdownloadsrequest.h"
#include "appsettings.h"
#include "qtabstractsocketvhipc.h"
#include "qtabstractvhipcpart.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtlocalsocket.h"
#include "qtvhbodycodec.h"
#include "qtvhipccompositepart.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"
#include "vhipcsettings.h"

#include <QLocalServer>
#include <QLocalSocket>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

namespace Keys = VhIpcIncomingDownloadsKeys;

using VhMap = QHash<QString, QVariant>;

qsizetype frameSize(const VhMap &map)
{
    return static_cast<qsizetype>(sizeof(quint32)) + QtVhBodyCodec::toDataStream(map).size();
}

} // namespace

class ApplicationEnd::Worker : public QObject {
public:
    virtual void accept(const QSharedPointer<QLocalSocket> &socket) = 0;
    virtual void changeSetting() = 0;
    ExchangeSizes sizes;

    QLocalServer server{this};
};

namespace {

class DownloadsPart : public QtAbstractVhIpcPart {
public:
    explicit DownloadsPart(ExchangeSizes &sizes) : m_sizes(sizes) { }

    void processVh(const VhMap &map) override
    {
        const auto request = toNewDownloadsRequest(map.value(Keys::request()).toHash());
        const VhMap answer = {{VhIpcKeys::name(), Keys::partName()},
                              {VhIpcKeys::reason(), Keys::finishedReason()},
                              {VhIpcKeys::id(), map.value(VhIpcKeys::id())},
                              {Keys::added(), !request.downloads.isEmpty()},
                              {Keys::aborted(), false},
                              {Keys::abortReason(), 0},
                              {Keys::error(), QString()},
                              {Keys::isSilent(), false}};
        Q_EMIT sendVh(answer);
        if (m_sizes.message == 0)
            m_sizes = {frameSize(map), frameSize(answer), m_sizes.change};
    }

private:
    ExchangeSizes &m_sizes;
};

class LinkWorker : public ApplicationEnd::Worker {
public:
    LinkWorker()
    {
        m_settings->setDefaultValue(toString(AppSettings::WbInterceptDownloads),
                                    QStringLiteral("1"));
    }

    void accept(const QSharedPointer<QLocalSocket> &socket) override
    {
        constexpr quint32 flags = VhIpcSettings::ApplyChanged | VhIpcSettings::SendChanged;
        m_parts.reset(new QtVhIpcCompositePart(nullptr, nullptr));
        const auto settings =
            QSharedPointer<VhIpcSettings>::create(m_settings, flags, QSet<QString>());
        m_parts->addPart(VhIpcSettings::partName(), settings, false, false);
        m_parts->addPart(Keys::partName(), QSharedPointer<DownloadsPart>::create(sizes), false,
                         false);
        m_link.reset(new QtAbstractSocketVhIpc(QSharedPointer<QtLocalSocket>::create(socket),
                                               m_parts, 0, false));
        // A client is told of all settings, too, when it asks for them. Connected last: the message
        // is on its way when its size is taken.
        QObject::connect(settings.data(), &QtAbstractVhIpcPart::sendVh, this,
                         [this](const VhMap &map) {
                             if (m_changes > 0 && sizes.change == 0)
                                 sizes.change = frameSize(map);
                         });
    }
    void changeSetting() override
    {
        m_settings->setValues({{toString(AppSettings::WbDontInterceptDownloadsIfKeyIsPressed),
                                QString::number(++m_changes % 2)}},
                              QString());
    }

private:
    const QSharedPointer<QtAppSettingsInMemoryManager> m_settings =
        QSharedPointer<QtAppSettingsInMemoryManager>::create();
    QSharedPointer<QtVhIpcCompositePart> m_parts;
    QSharedPointer<QtAbstractSocketVhIpc> m_link;
    int m_changes = 0;
};

class BareWorker : public ApplicationEnd::Worker {
public:
    explicit BareWorker(ExchangeSizes exchange) { sizes = exchange; }

    void accept(const QSharedPointer<QLocalSocket> &socket) override
    {
        m_socket = socket;
        connect(m_socket.data(), &QIODevice::readyRead, this, [this] {
            while (m_socket->bytesAvailable() >= sizes.message) {
                m_socket->read(sizes.message);
                m_socket->write(QByteArray(sizes.answer, 'a'));
            }
        });
    }
    void changeSetting() override { m_socket->write(QByteArray(sizes.change, 'c')); }

private:
    QSharedPointer<QLocalSocket> m_socket;
};

} // namespace

ApplicationEnd::ApplicationEnd(const QString &name) : m_worker(new LinkWorker) { start(name); }

ApplicationEnd::ApplicationEnd(const QString &name, ExchangeSizes sizes)
    : m_worker(new BareWorker(sizes))
{
    start(name);
}

ApplicationEnd::~ApplicationEnd()
{
    m_thread.quit();
    m_thread.wait();
}

void ApplicationEnd::start(const QString &name)
{
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    QObject::connect(
        &m_worker->server, &QLocalServer::newConnection, m_worker, [worker = m_worker] {
            QLocalSocket *const socket = worker->server.nextPendingConnection();
            socket->setParent(nullptr);
            worker->accept(QSharedPointer<QLocalSocket>(socket, &QObject::deleteLater));
        });
    m_worker->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(
        m_worker,
        [worker = m_worker, name] {
            if (worker->server.listen(name))
                return;
            std::fprintf(stderr, "cannot serve at %s\n", qPrintable(name));
            std::exit(1);
        },
        Qt::BlockingQueuedConnection);
}

void ApplicationEnd::changeSetting()
{
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker] { worker->changeSetting(); }, Qt::QueuedConnection);
}

ExchangeSizes ApplicationEnd::sizes() const
{
    ExchangeSizes sizes;
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, &sizes] { sizes = worker->sizes; },
        Qt::BlockingQueuedConnection);
    return sizes;
}
