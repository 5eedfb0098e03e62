#include "kovstreamrelayrequest.h"

#include "kovcontentdecoder.h"
#include "kovhttpexchange.h"
#include "kovplaylist.h"
#include "kovspeedlimit.h"
#include "playlisttext.h"
#include "urlchecks.h"

#include <QRegularExpression>
#include <QTcpSocket>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr qsizetype maxHeadBytes = qsizetype{64} * 1024;
constexpr qint64 maxForwardedBytes = qint64{64} * 1024;
/// Back-pressure: no more is read from the web while so much is unsent.
constexpr qint64 maxWaitingBytes = 1 << 20;
constexpr int maxAttempts = 4;
constexpr int firstRetryMs = 1000;

/// Decodes a Content-Encoding; nothing when that fails.
std::optional<QByteArray> decoded(const QByteArray &text, const QByteArray &encoding)
{
    if (encoding.isEmpty())
        return text;
    const auto decoder = KovContentDecoder::create(encoding);
    QByteArray result;
    const auto keep = [&result](const char *data, qint64 size) {
        result.append(data, size);
        return result.size() <= KovPlaylist::maxBytes;
    };
    if (!decoder
        || decoder->decode(text.constData(), text.size(), keep) != KovContentDecoder::Result::Ok)
        return std::nullopt;
    return result;
}

} // namespace

KovStreamRelayRequest::KovStreamRelayRequest(QTcpSocket *socket, KovStreamOrigin origin,
                                             QByteArray relayAddress, QtClock &clock,
                                             QObject *parent)
    : QObject(parent), m_socket(socket), m_origin(std::move(origin)),
      m_relayAddress(std::move(relayAddress)), m_retryTimer(clock.createTimer())
{
    m_socket->setParent(this);
    connect(m_socket, &QTcpSocket::readyRead, this, &KovStreamRelayRequest::onReadyRead);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &KovStreamRelayRequest::pump);
    connect(m_socket, &QTcpSocket::disconnected, this, &KovStreamRelayRequest::deleteLater);
    connect(m_origin.speedLimit.data(), &KovSpeedLimit::refilled, this,
            &KovStreamRelayRequest::pump);
    connect(m_retryTimer.get(), &QtSingleShotTimer::timeout, this, &KovStreamRelayRequest::ask);
}

KovStreamRelayRequest::~KovStreamRelayRequest() = default;

void KovStreamRelayRequest::onReadyRead()
{
    m_head += m_socket->readAll();
    if (m_exchange || (!m_head.contains("\r\n\r\n") && m_head.size() < maxHeadBytes))
        return;
    if (parse())
        ask();
    else
        m_socket->abort();
}

bool KovStreamRelayRequest::parse()
{
    static const QRegularExpression request(QStringLiteral("^GET (\\S+) HTTP/1\\.[01]\r\n"));
    static const QRegularExpression range(QStringLiteral("\r\nRange: *bytes=(\\d+)-(\\d*)\r\n"),
                                          QRegularExpression::CaseInsensitiveOption);
    const QString head = QString::fromUtf8(m_head);
    const QByteArray target = request.match(head).captured(1).toUtf8();
    const QByteArray path = QUrl::fromEncoded(m_relayAddress).path().toUtf8();
    const qsizetype schemeEnd = target.indexOf('/', path.size());
    if (!target.startsWith(path) || schemeEnd < 0)
        return false;
    m_url = QUrl::fromEncoded(target.mid(path.size(), schemeEnd - path.size()) + "://"
                              + target.mid(schemeEnd + 1));
    if (const auto match = range.match(head); match.hasMatch()) {
        m_from = match.captured(1).toLongLong();
        m_to = match.captured(2).isEmpty() ? -1 : match.captured(2).toLongLong() + 1;
    }
    return true;
}

void KovStreamRelayRequest::ask()
{
    const bool isLessSafe = isValidHttpsUrl(m_origin.request.url) && !isValidHttpsUrl(m_url);
    if (!isValidHttpUrl(m_url) || m_url.host().isEmpty() || isLessSafe) {
        fail(
            permanentFailure(QStringLiteral("the playlist refers to where it cannot be followed")));
        return;
    }
    m_isGood = false;
    m_text.clear();
    m_exchange =
        std::make_unique<KovHttpExchange>(m_origin.request, m_origin.network, m_origin.cookies);
    connect(m_exchange.get(), &KovHttpExchange::headersReceived, this,
            &KovStreamRelayRequest::onHeadersReceived);
    connect(m_exchange.get(), &KovHttpExchange::readyRead, this, &KovStreamRelayRequest::pump);
    connect(m_exchange.get(), &KovHttpExchange::finished, this, &KovStreamRelayRequest::pump);
    if (m_from == 0 && m_to < 0 && m_handedOn == 0)
        m_exchange->startAt(m_url);
    else
        m_exchange->startAt(m_url, m_from + m_handedOn, m_to, m_validators.ifRange());
}

void KovStreamRelayRequest::onHeadersReceived()
{
    const KovHttpResponse &response = m_exchange->response();
    if (response.failure)
        return; // handled when it has finished
    const bool goesOn = m_handedOn == 0
        || (response.status == KovHttpStatus::partialContent
            && response.from == m_from + m_handedOn);
    if (!goesOn) {
        fail(transientFailure(QStringLiteral("the server sent another part than was asked for")));
        return;
    }
    m_isGood = true;
    m_validators = response.validators;
}

void KovStreamRelayRequest::pump()
{
    if (!m_exchange)
        return;
    if (m_isGood && !m_isHeadSent && !m_isText) {
        if (m_exchange->bytesAvailable() < PlaylistText::beginningBytes
            && !m_exchange->isFinished())
            return;
        m_isText = m_from == 0 && m_to < 0
            && (KovPlaylist::mayBegin(m_exchange->peek(PlaylistText::beginningBytes))
                || !m_exchange->response().contentEncoding.isEmpty());
    }
    if (m_isGood && m_isText)
        pumpText();
    else if (m_isGood)
        handOn();
    if (!m_exchange || !m_exchange->isFinished() || (m_isGood && m_exchange->bytesAvailable() > 0))
        return;
    if (const KovFailure failure = m_exchange->failure()) {
        onBroken(failure);
        return;
    }
    if (m_isText)
        sendText(m_text);
    m_exchange.release()->deleteLater();
    m_socket->disconnectFromHost();
}

void KovStreamRelayRequest::pumpText()
{
    m_text += m_exchange->readAll();
    if (m_text.size() > KovPlaylist::maxBytes)
        fail(permanentFailure(QStringLiteral("the playlist is too long")));
}

void KovStreamRelayRequest::handOn()
{
    if (!std::exchange(m_isHeadSent, true)) {
        const KovHttpResponse &response = m_exchange->response();
        QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " OK\r\n";
        if (response.bodyBytes >= 0)
            head += "Content-Length: " + QByteArray::number(response.bodyBytes) + "\r\n";
        if (response.status == KovHttpStatus::partialContent)
            head += "Content-Range: bytes " + QByteArray::number(response.from) + '-'
                + QByteArray::number(response.from + response.bodyBytes - 1) + '/'
                + (response.totalBytes < 0 ? "*" : QByteArray::number(response.totalBytes))
                + "\r\n";
        m_socket->write(head + (response.acceptsRanges ? "Accept-Ranges: bytes\r\n" : "")
                        + "Content-Type: " + response.contentType
                        + "\r\nConnection: close\r\n\r\n");
    }
    static std::array<char, maxForwardedBytes> piece; // main thread only
    while (m_exchange->bytesAvailable() > 0 && m_socket->bytesToWrite() < maxWaitingBytes) {
        const qint64 wanted = std::min(maxForwardedBytes, m_exchange->bytesAvailable());
        const qint64 allowed = m_origin.speedLimit->take(wanted);
        if (allowed == 0)
            return;
        const qint64 size = m_exchange->read(piece.data(), allowed);
        m_origin.speedLimit->giveBack(allowed - std::max<qint64>(0, size));
        if (size <= 0)
            return;
        m_attempts = 0;
        m_handedOn += size;
        m_socket->write(piece.data(), size);
        Q_EMIT received(size);
    }
}

void KovStreamRelayRequest::sendText(QByteArray text)
{
    const KovHttpResponse &response = m_exchange->response();
    const auto plain = decoded(text, response.contentEncoding);
    if (!plain) {
        fail(permanentFailure(QStringLiteral("the server sent a broken encoding")));
        return;
    }
    const bool isPlaylist = KovPlaylist::isPlaylist(*plain);
    if (isPlaylist && response.url != m_url) {
        // Its references are relative to that URL.
        m_socket->write(
            "HTTP/1.1 302 Found\r\nLocation: "
            + KovPlaylist::relocatedReference(response.url.toEncoded(), m_url, m_relayAddress)
            + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        return;
    }
    text = isPlaylist ? KovPlaylist::relocated(*plain, m_url, m_relayAddress) : *plain;
    m_socket->write("HTTP/1.1 200 OK\r\nContent-Type: " + response.contentType
                    + "\r\nContent-Length: " + QByteArray::number(text.size())
                    + "\r\nConnection: close\r\n\r\n" + text);
    Q_EMIT received(text.size());
}

void KovStreamRelayRequest::onBroken(const KovFailure &failure)
{
    m_exchange.release()->deleteLater();
    if (failure.kind != KovFailure::Kind::Transient || ++m_attempts >= maxAttempts) {
        fail(failure);
        return;
    }
    m_retryTimer->start(firstRetryMs << (m_attempts - 1));
}

void KovStreamRelayRequest::fail(const KovFailure &failure)
{
    if (m_exchange)
        m_exchange.release()->deleteLater();
    Q_EMIT failed(m_url, failure);
    if (m_isHeadSent) {
        m_socket->abort();
        return;
    }
    m_socket->write("HTTP/1.1 502 Bad Gateway\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    m_socket->disconnectFromHost();
}
