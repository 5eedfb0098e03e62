#pragma once

#include "kovhttpresponse.h"
#include "kovjob.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QByteArray>
#include <QObject>
#include <QSharedPointer>
#include <QUrl>

#include <memory>

class KovHttpExchange;
class KovNetworkPool;
class KovSpeedLimit;
class QNetworkCookieJar;
class QTcpSocket;

/// Shared by all requests for the parts of one stream.
struct KovStreamOrigin {
    KovDownloadRequest request;
    QSharedPointer<KovNetworkPool> network;
    QSharedPointer<QNetworkCookieJar> cookies;
    QSharedPointer<KovSpeedLimit> speedLimit;
};

/**
 * One request to the relay, which it forwards to the web.
 *
 * Broken downloads are resumed. References in playlists are rewritten to the relay. Deletes itself
 * when the connection ends.
 */
class KovStreamRelayRequest : public QObject {
    Q_OBJECT
public:
    /// The relay's base URL, see KovPlaylist::relocated().
    KovStreamRelayRequest(QTcpSocket *socket, KovStreamOrigin origin, QByteArray relayAddress,
                          QtClock &clock, QObject *parent);
    ~KovStreamRelayRequest() override;

Q_SIGNALS:
    void received(qint64 bytes);
    /// The download failed; the connection is aborted.
    void failed(const QUrl &url, const KovFailure &failure);

private:
    void onReadyRead();
    bool parse();
    void ask();
    void onHeadersReceived();
    void pump();
    void pumpText();
    void handOn();
    void sendText(QByteArray text);
    void onBroken(const KovFailure &failure);
    void fail(const KovFailure &failure);

    QTcpSocket *const m_socket;
    const KovStreamOrigin m_origin;
    const QByteArray m_relayAddress;
    const std::unique_ptr<QtSingleShotTimer> m_retryTimer;
    QByteArray m_head;
    QUrl m_url;
    qint64 m_from = 0;
    /// -1 for the end.
    qint64 m_to = -1;
    std::unique_ptr<KovHttpExchange> m_exchange;
    KovValidators m_validators;
    /// The body of a playlist, which is forwarded when it is complete.
    QByteArray m_text;
    qint64 m_handedOn = 0;
    int m_attempts = 0;
    bool m_isGood = false;
    bool m_isHeadSent = false;
    bool m_isText = false;
};
