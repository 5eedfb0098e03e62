#include "kovfiletransfer.h"

#include "kovcontentdecoder.h"
#include "kovdownloadfolder.h"
#include "kovfilename.h"
#include "kovhttpexchange.h"
#include "kovpartialfile.h"
#include "kovspeedlimit.h"

#include <QFileInfo>
#include <QLocale>
#include <QStorageInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr qint64 maxReadBytes = qint64{256} * 1024;
/// The minimum size of a range with a connection of its own.
constexpr qint64 smallestRangeBytes = 1 << 20;
/// Free space that is left on the disk for other programs.
constexpr qint64 spareBytes = 16 << 20;

QString fileNameFor(const KovHttpResponse &response, const KovDownloadRequest &request)
{
    QString suggested = KovFileName::sanitized(request.suggestedName);
    if (!suggested.isEmpty())
        return suggested;
    return response.fileName.isEmpty() ? KovFileName::fromUrl(response.url) : response.fileName;
}

/// Whether the whole file fits.
KovFailure checkRoom(const QString &folder, qint64 totalBytes)
{
    const QStorageInfo disk(folder);
    if (!disk.isValid() || totalBytes + spareBytes <= disk.bytesAvailable())
        return {};
    return {KovFailure::Kind::NoRoom,
            QStringLiteral("there is no room on the disk: the file needs %1 bytes, there are %2")
                .arg(QString::number(totalBytes), QString::number(disk.bytesAvailable()))};
}

QString cutText() { return QStringLiteral("the connection ended before the file did"); }

} // namespace

struct KovFileTransfer::Connection {
    std::unique_ptr<KovHttpExchange> exchange;
    qsizetype range = 0;
    /// Asks for a range, not for the whole file.
    bool isPartial = false;
    bool isGood = false;
    /// Only checks whether the file continues after its presumed end.
    bool isConfirmation = false;
};

KovFileTransfer::KovFileTransfer(KovJob job, KovDownloadRequest request, Environment environment,
                                 QObject *parent, QtClock &clock)
    : KovTransfer(std::move(job), std::move(request), std::move(environment), parent, clock),
      m_ranges(m_job.ranges)
{
    connect(m_environment.speedLimit.data(), &KovSpeedLimit::refilled, this,
            &KovFileTransfer::pumpAll);
}

KovFileTransfer::~KovFileTransfer() = default;

void KovFileTransfer::start()
{
    m_acceptsRanges = !m_job.validators.ifRange().isEmpty() && m_job.totalBytes >= 0;
    if (isResumable() && m_job.receivedBytes() > 0)
        resume();
    else
        beginAnew();
    m_speed.start(m_clock.monotonicMs(), receivedBytes());
}

void KovFileTransfer::resume()
{
    if (isNamed()) {
        finishNamed();
        return;
    }
    QString error;
    m_file = KovPartialFile::open(m_job.partialPath, error);
    if (m_file && QFileInfo(m_job.partialPath).size() >= m_ranges.endOfReceived())
        fetchRest();
    else
        beginAnew();
}

void KovFileTransfer::beginAnew()
{
    m_decoder.reset();
    m_acceptsRanges = false;
    m_ranges = KovRanges(-1);
    connectTo(0);
}

KovFileTransfer::Connection &KovFileTransfer::connectTo(qsizetype range)
{
    Connection &connection = *m_connections.emplace_back(std::make_unique<Connection>());
    connection.range = range;
    connection.exchange = std::make_unique<KovHttpExchange>(m_request, m_environment.network);
    KovHttpExchange *const exchange = connection.exchange.get();
    connect(exchange, &KovHttpExchange::headersReceived, this,
            [this, opened = &connection] { onHeadersReceived(*opened); });
    connect(exchange, &KovHttpExchange::readyRead, this,
            [this, opened = &connection] { pump(*opened); });
    connect(exchange, &KovHttpExchange::finished, this,
            [this, opened = &connection] { pump(*opened); });
    const KovRange &asked = m_ranges.at(range);
    connection.isPartial = m_acceptsRanges;
    if (connection.isPartial)
        exchange->start(asked.next(), asked.to, m_job.validators.ifRange());
    else
        exchange->start();
    return connection;
}

void KovFileTransfer::onHeadersReceived(Connection &connection)
{
    const KovHttpResponse &response = connection.exchange->response();
    if (connection.isConfirmation) {
        // Any other response than more of the file leaves this as the best result.
        connection.isGood = response.status == KovHttpStatus::partialContent && !response.failure
            && response.from == m_ranges.at(0).next();
        if (connection.isGood)
            pump(connection);
        else
            finish();
        return;
    }
    const bool isAlone = m_connections.size() == 1;
    KovFailure failure;
    if (!connection.isPartial || (response.status == KovHttpStatus::ok && isAlone)) {
        connection.range = 0;
        connection.isPartial = false;
        failure = takeWholeFile(response);
    } else if (response.status == KovHttpStatus::rangeNotSatisfiable && isAlone) {
        m_connections.clear();
        beginAnew();
        return;
    } else {
        failure = checkRangeResponse(response, m_ranges.at(connection.range).next(), m_job);
    }
    if (failure) {
        drop(connection, failure);
        return;
    }
    const KovDownloadRequest request = connection.exchange->request();
    m_redirected = m_redirected || request.url != m_request.url;
    m_request = request;
    connection.isGood = true;
    pump(connection);
}

KovFailure KovFileTransfer::takeWholeFile(const KovHttpResponse &response)
{
    if (KovFailure failure = checkFirstResponse(response, m_request))
        return failure;
    m_decoder.reset();
    if (!response.contentEncoding.isEmpty()) {
        m_decoder = KovContentDecoder::create(response.contentEncoding);
        if (!m_decoder)
            return permanentFailure(QStringLiteral("the server sent the file encoded as \"%1\"")
                                        .arg(QString::fromLatin1(response.contentEncoding)));
    }
    m_acceptsRanges = response.acceptsRanges && response.contentEncoding.isEmpty();
    m_job.totalBytes = response.totalBytes;
    m_job.validators = response.validators;
    m_ranges = KovRanges(response.totalBytes);
    m_job.ranges = m_ranges;
    if (KovFailure failure = openFile(fileNameFor(response, m_request)))
        return failure;
    return checkRoom(m_environment.folder->path(), response.totalBytes);
}

void KovFileTransfer::pumpAll()
{
    // Reentrancy: reading may end connections and add others.
    std::vector<Connection *> connections;
    connections.reserve(m_connections.size());
    for (const auto &connection : m_connections)
        connections.push_back(connection.get());
    for (Connection *const connection : connections) {
        const bool isThere =
            std::any_of(m_connections.cbegin(), m_connections.cend(),
                        [connection](const auto &each) { return each.get() == connection; });
        if (isThere)
            pump(*connection);
    }
}

void KovFileTransfer::pump(Connection &connection)
{
    KovHttpExchange &exchange = *connection.exchange;
    static std::array<char, maxReadBytes> piece; // main thread only
    while (connection.isGood && exchange.bytesAvailable() > 0) {
        const KovRange &range = m_ranges.at(connection.range);
        qint64 wanted = std::min(maxReadBytes, exchange.bytesAvailable());
        if (range.to >= 0)
            wanted = std::min(wanted, range.to - range.next());
        if (wanted <= 0)
            break; // beyond the range, which may have been split
        const qint64 allowed = m_environment.speedLimit->take(wanted);
        if (allowed == 0)
            return;
        const qint64 size = exchange.read(piece.data(), allowed);
        m_environment.speedLimit->giveBack(allowed - std::max<qint64>(0, size));
        if (size <= 0)
            break;
        if (!keep(connection.range, piece.data(), size))
            return;
        accept();
        if (m_ending)
            return;
    }
    const KovRange &range = m_ranges.at(connection.range);
    if (exchange.isFinished() || (connection.isGood && range.isComplete()))
        onBodyEnded(connection);
}

bool KovFileTransfer::keep(qsizetype range, const char *bytes, qint64 size)
{
    const auto write = [this, range](const char *data, qint64 length) {
        if (!m_file->write(m_ranges.at(range).next(), data, length))
            return false;
        m_ranges.advance(range, length);
        return true;
    };
    const auto result = m_decoder ? m_decoder->decode(bytes, size, write)
        : write(bytes, size)      ? KovContentDecoder::Result::Ok
                                  : KovContentDecoder::Result::NotKept;
    switch (result) {
    case KovContentDecoder::Result::Ok:
        return true;
    case KovContentDecoder::Result::Broken:
        end(transientFailure(QStringLiteral("the server sent a broken encoding")));
        return false;
    case KovContentDecoder::Result::NotKept:
        end(writeFailure(*m_file, m_file->errorNumber()));
        return false;
    }
    return false;
}

void KovFileTransfer::onBodyEnded(Connection &connection)
{
    const KovRange &range = m_ranges.at(connection.range);
    const KovFailure failure = connection.exchange->failure();
    if (connection.isConfirmation && !connection.isGood) {
        finish();
        return;
    }
    if (!range.isComplete()) {
        if (failure || !connection.isGood) {
            drop(connection, failure ? failure : transientFailure(u"the server did not answer"_qs));
            return;
        }
        if (range.to >= 0 || (m_decoder && !m_decoder->isAtEnd())) {
            drop(connection, transientFailure(cutText()));
            return;
        }
        if (!connection.isConfirmation && confirmEnd(connection))
            return;
        if (isCut()) {
            drop(connection, transientFailure(cutText()));
            return;
        }
        m_job.totalBytes = m_ranges.endHere();
    }
    close(connection);
    fetchRest();
}

bool KovFileTransfer::confirmEnd(const Connection &connection)
{
    // Qt treats an invalid chunk length as the last chunk, so a chunked file may be truncated. A
    // server that supports ranges can tell.
    if (!m_acceptsRanges || m_job.validators.ifRange().isEmpty() || !m_request.postData.isEmpty())
        return false;
    const qsizetype range = connection.range;
    m_connections.clear();
    connectTo(range).isConfirmation = true;
    return true;
}

bool KovFileTransfer::isCut() const
{
    return m_job.totalBytes < 0 && m_ranges.at(0).next() < m_request.announcedBytes;
}

void KovFileTransfer::close(const Connection &connection)
{
    m_connections.erase(
        std::find_if(m_connections.begin(), m_connections.end(),
                     [&connection](const auto &each) { return each.get() == &connection; }));
}

void KovFileTransfer::drop(Connection &connection, const KovFailure &failure)
{
    if (m_connections.size() == 1) {
        end(failure);
        return;
    }
    // The server refuses further connections, or is about to close all of them.
    m_speed.setMaxConnections(static_cast<int>(m_connections.size()) - 1);
    close(connection);
}

bool KovFileTransfer::isFetched(qsizetype range) const
{
    return std::any_of(m_connections.cbegin(), m_connections.cend(),
                       [range](const auto &connection) { return connection->range == range; });
}

bool KovFileTransfer::areAllBusy() const
{
    return !m_connections.empty()
        && std::all_of(m_connections.cbegin(), m_connections.cend(),
                       [](const auto &connection) { return connection->isGood; });
}

void KovFileTransfer::fetchRest()
{
    for (qsizetype range = 0; range < m_ranges.count(); ++range) {
        if (m_ranges.at(range).isComplete() || isFetched(range))
            continue;
        connectTo(range);
        return;
    }
    if (m_connections.empty())
        finish();
    else if (connections() < m_speed.maxConnections())
        splitLargestRange();
}

void KovFileTransfer::splitLargestRange()
{
    if (m_ranges.splitLargest(smallestRangeBytes))
        connectTo(m_ranges.count() - 1);
}

void KovFileTransfer::tick()
{
    m_speed.measure(m_clock.monotonicMs(), receivedBytes());
    if (m_ending)
        return;
    if (areAllBusy() && isResumable()
        && m_speed.isAnotherWorthIt(static_cast<int>(connections()),
                                    m_job.totalBytes - receivedBytes()))
        splitLargestRange();
    if (!m_file || m_storing || m_ranges == m_job.ranges)
        return;
    m_storing = true;
    m_file->sync(this, [this, ranges = m_ranges](int error) {
        m_storing = false;
        if (m_ending)
            return;
        if (error != 0) {
            end(isDiskFull(error) ? KovFailure{KovFailure::Kind::DiskFull, systemErrorString(error)}
                                  : permanentFailure(systemErrorString(error)));
            return;
        }
        m_job.ranges = ranges;
        Q_EMIT progressStored();
    });
}

bool KovFileTransfer::isResumable() const
{
    return m_acceptsRanges && m_job.totalBytes >= 0 && !m_job.validators.ifRange().isEmpty()
        && m_request.postData.isEmpty();
}

void KovFileTransfer::finish()
{
    m_connections.clear();
    if (isCut()) {
        end(transientFailure(cutText()));
        return;
    }
    if (m_job.totalBytes < 0)
        m_job.totalBytes = m_ranges.endHere();
    complete();
}

void KovFileTransfer::abort()
{
    for (const auto &connection : m_connections)
        connection->exchange->abort();
}
