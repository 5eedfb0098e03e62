#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

/// An HTTP server on 127.0.0.1 that answers each request with the bytes that a test gives for it,
/// and then closes the connection.
class TestHttpServer : public QObject {
public:
    struct Request {
        QByteArray method;
        QByteArray path;
        /// By lower-case name.
        QHash<QByteArray, QByteArray> headers;
        QByteArray body;
    };

    TestHttpServer()
    {
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *const socket = m_server.nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(*socket); });
        });
        m_listening = m_server.listen(QHostAddress::LocalHost);
    }

    bool isListening() const { return m_listening; }
    void close() { m_server.close(); }
    QUrl url(const QString &path, const QString &host = QStringLiteral("127.0.0.1")) const
    {
        return QUrl(QStringLiteral("http://%1:%2%3")
                        .arg(host, QString::number(m_server.serverPort()), path));
    }
    void answer(const QByteArray &path, const QByteArray &response)
    {
        m_responses.insert(path, response);
    }
    static QByteArray ok(const QByteArray &body, const QByteArray &headers = {})
    {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n"
            + headers + "\r\n" + body;
    }
    static QByteArray redirect(const QUrl &to, const QByteArray &status = "302 Found",
                               const QByteArray &headers = {})
    {
        return "HTTP/1.1 " + status + "\r\nLocation: " + to.toEncoded()
            + "\r\nContent-Length: 0\r\n" + headers + "\r\n";
    }

    /// In the order in which they came.
    QList<Request> requests() const { return m_requests; }

private:
    void read(QTcpSocket &socket)
    {
        m_received[&socket] += socket.readAll();
        const QByteArray received = m_received.value(&socket);
        const qsizetype headEnd = received.indexOf("\r\n\r\n");
        if (headEnd < 0)
            return;
        QList<QByteArray> lines = received.left(headEnd).split('\n');
        const QList<QByteArray> requestLine = lines.takeFirst().trimmed().split(' ');
        Request request{requestLine.value(0), requestLine.value(1), {}, {}};
        for (const QByteArray &line : std::as_const(lines)) {
            const qsizetype colon = line.indexOf(':');
            request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
        }
        request.body = received.mid(headEnd + 4);
        if (request.body.size() < request.headers.value("content-length").toInt())
            return;
        m_received.remove(&socket);
        m_requests.append(request);
        socket.write(m_responses.value(request.path,
                                       "HTTP/1.1 404 Not Found\r\nContent-Length: 5\r\n\r\nsorry"));
        socket.disconnectFromHost();
    }

    QTcpServer m_server;
    bool m_listening = false;
    QHash<QTcpSocket *, QByteArray> m_received;
    QHash<QByteArray, QByteArray> m_responses;
    QList<Request> m_requests;
};
