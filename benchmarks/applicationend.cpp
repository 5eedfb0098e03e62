#include "applicationend.h"

#include "appsettings.h"
#include "qtabstractvhipcpart.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtvhbodycodec.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"
#include "vhipcsettings.h"

#include <QDataStream>
#include <QLocalServer>
#include <QLocalSocket>
#include <QtEndian>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

namespace Keys = VhIpcIncomingDownloadsKeys;

using VhMap = QHash<QString, QVariant>;

} // namespace

class ApplicationEnd::Worker : public QObject {
public:
    virtual void accept(const QSharedPointer<QLocalSocket> &socket) = 0;
    virtual void changeSetting() = 0;
    ExchangeSizes sizes;

    QLocalServer server{this};
};

namespace {

/// The encoding of a text or an id on the link; see "Serializing Qt Data Types".
QByteArray onLink(const QString &text)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << text;
    return bytes;
}
QByteArray onLink(const QVariant &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_12);
    stream << value;
    return bytes;
}

/// Splits the frames itself, and does not decode those with downloads: to answer one it only
/// searches for its id, so that the benchmark measures the host.
class AnsweringWorker : public ApplicationEnd::Worker {
public:
    AnsweringWorker()
    {
        m_settings->setDefaultValue(toString(AppSettings::WbInterceptDownloads),
                                    QStringLiteral("1"));
        const VhMap answer = {{VhIpcKeys::name(), Keys::partName()},
                              {VhIpcKeys::reason(), Keys::finishedReason()},
                              {VhIpcKeys::id(), qint64{0}},
                              {Keys::added(), true},
                              {Keys::aborted(), false},
                              {Keys::abortReason(), 0},
                              {Keys::error(), QString()},
                              {Keys::isSilent(), false}};
        m_answer = frame(answer);
        m_answerId = idIn(m_answer);
        sizes.answer = m_answer.size();
    }

    void accept(const QSharedPointer<QLocalSocket> &socket) override
    {
        constexpr quint32 flags = VhIpcSettings::ApplyChanged | VhIpcSettings::SendChanged;
        m_socket = socket;
        m_settingsPart.reset(new VhIpcSettings(m_settings, flags, QSet<QString>()));
        connect(m_settingsPart.data(), &QtAbstractVhIpcPart::sendVh, this,
                [this](const VhMap &map) {
                    const QByteArray bytes = frame(map);
                    // All settings are also sent to a client that requests them.
                    if (m_changes > 0 && sizes.change == 0)
                        sizes.change = bytes.size();
                    m_socket->write(bytes);
                });
        m_settingsPart->onConnectChanged(true);
        connect(m_socket.data(), &QIODevice::readyRead, this, &AnsweringWorker::onReadyRead);
    }
    void changeSetting() override
    {
        m_settings->setValues({{toString(AppSettings::WbDontInterceptDownloadsIfKeyIsPressed),
                                QString::number(++m_changes % 2)}},
                              QString());
    }

private:
    static QByteArray frame(const VhMap &map)
    {
        const QByteArray body = QtVhBodyCodec::toDataStream(map);
        QByteArray length(sizeof(quint32), Qt::Uninitialized);
        qToBigEndian(static_cast<quint32>(body.size()), length.data());
        return length + body;
    }
    /// The position of the eight bytes of the id.
    static qsizetype idIn(const QByteArray &frame)
    {
        static const QByteArray before =
            onLink(VhIpcKeys::id()) + onLink(QVariant(qint64{0})).chopped(sizeof(qint64));
        return frame.indexOf(before) + before.size();
    }

    void onReadyRead()
    {
        static const QByteArray downloads = onLink(Keys::partName());
        while (m_socket->bytesAvailable() >= qint64(sizeof(quint32))) {
            const qint64 size = qFromBigEndian<quint32>(m_socket->peek(sizeof(quint32)).constData())
                + qint64(sizeof(quint32));
            if (m_socket->bytesAvailable() < size)
                return;
            const QByteArray received = m_socket->read(size);
            if (received.contains(downloads))
                answer(received);
            else if (const auto map = QtVhBodyCodec::fromDataStream(received.sliced(4)))
                m_settingsPart->processVh(*map);
        }
    }

    void answer(const QByteArray &received)
    {
        if (sizes.message == 0)
            sizes.message = received.size();
        std::copy_n(received.constData() + idIn(received), sizeof(qint64),
                    m_answer.data() + m_answerId);
        m_socket->write(m_answer);
        m_socket->flush();
    }

    const QSharedPointer<QtAppSettingsInMemoryManager> m_settings =
        QSharedPointer<QtAppSettingsInMemoryManager>::create();
    QSharedPointer<QLocalSocket> m_socket;
    QScopedPointer<VhIpcSettings> m_settingsPart;
    QByteArray m_answer;
    qsizetype m_answerId = 0;
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
                m_socket->flush();
            }
        });
    }
    void changeSetting() override { m_socket->write(QByteArray(sizes.change, 'c')); }

private:
    QSharedPointer<QLocalSocket> m_socket;
};

} // namespace

ApplicationEnd::ApplicationEnd(const QString &name) : m_worker(new AnsweringWorker) { start(name); }

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
