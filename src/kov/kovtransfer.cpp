#include "kovtransfer.h"

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

constexpr int okStatus = 200;
constexpr int partialContentStatus = 206;
constexpr int rangeNotSatisfiableStatus = 416;

constexpr qint64 pieceBytes = 256 * 1024;
/// A connection of its own is not worth less.
constexpr qint64 smallestRangeBytes = 1 << 20;
/// So many seconds show how fast the connections are together; a further one has to bring a tenth.
constexpr int ticksToMeasure = 2;
constexpr qint64 secondsWorthAnother = 3;
/// Room that stays for others on a disk.
constexpr qint64 spareBytes = 16 << 20;

/// A browser that has just been told to give up its own download removes its file; then the name is
/// free.
constexpr int browserLetsGoWithinMs = 5000;
constexpr int nameRetryMs = 100;

constexpr qint64 millisecondsPerSecond = 1000;

QString fileName(const KovAnswer &answer, const KovDownloadRequest &request)
{
    const QString suggested = KovFileName::sanitized(request.suggestedName);
    if (!suggested.isEmpty())
        return suggested;
    return answer.fileName.isEmpty() ? KovFileName::fromUrl(answer.url) : answer.fileName;
}

} // namespace

struct KovTransfer::Connection {
    std::unique_ptr<KovHttpExchange> exchange;
    size_t range = 0;
    /// Asks for a range, not for the whole file.
    bool isPartial = false;
    bool isGood = false;
    /// Only asks whether the file goes on after its end.
    bool isConfirmation = false;
};

KovTransfer::KovTransfer(KovJob job, KovDownloadRequest request, Environment environment,
                         QObject *parent, QtClock &clock)
    : QObject(parent), m_job(std::move(job)), m_request(std::move(request)),
      m_environment(std::move(environment)), m_clock(clock), m_ranges(m_job.ranges),
      m_nameTimer(clock.createTimer()), m_connectionsCap(m_environment.maxConnections)
{
    connect(m_environment.speedLimit.data(), &KovSpeedLimit::refilled, this, &KovTransfer::pumpAll);
    connect(m_nameTimer.get(), &QtSingleShotTimer::timeout, this, &KovTransfer::giveFinalName);
}

KovTransfer::~KovTransfer() = default;

void KovTransfer::start()
{
    m_lastTickMs = m_clock.monotonicMs();
    m_acceptsRanges = !m_job.validators.ifRange().isEmpty() && m_job.totalBytes >= 0;
    if (isResumable() && m_job.receivedBytes() > 0)
        resume();
    else
        beginAnew();
    m_lastReceived = receivedBytes();
}

void KovTransfer::resume()
{
    if (m_job.receivedBytes() == m_job.totalBytes && !QFileInfo::exists(m_job.partialPath)
        && QFileInfo(m_job.path).size() == m_job.totalBytes) {
        // The end came between the naming of the file and the note that the job is done.
        m_job.partialPath.clear();
        m_finished = true;
        end({});
        return;
    }
    QString error;
    m_file = KovPartialFile::open(m_job.partialPath, error);
    const qint64 size = QFileInfo(m_job.partialPath).size();
    const bool isThere =
        m_file && std::all_of(m_ranges.cbegin(), m_ranges.cend(), [size](const KovRange &range) {
            return range.done == 0 || range.next() <= size;
        });
    if (isThere)
        fetchRest();
    else
        beginAnew();
}

void KovTransfer::beginAnew()
{
    m_decoder.reset();
    m_acceptsRanges = false;
    m_ranges = {KovRange()};
    connectTo(0);
}

KovTransfer::Connection &KovTransfer::connectTo(size_t range)
{
    Connection &connection = *m_connections.emplace_back(std::make_unique<Connection>());
    connection.range = range;
    connection.exchange = std::make_unique<KovHttpExchange>(m_request, m_environment.network);
    KovHttpExchange *const exchange = connection.exchange.get();
    connect(exchange, &KovHttpExchange::answered, this,
            [this, &connection] { onAnswered(connection); });
    connect(exchange, &KovHttpExchange::readyRead, this, [this, &connection] { pump(connection); });
    connect(exchange, &KovHttpExchange::finished, this, [this, &connection] { pump(connection); });
    const KovRange &asked = m_ranges.at(static_cast<qsizetype>(range));
    connection.isPartial = m_acceptsRanges;
    if (connection.isPartial)
        exchange->start(asked.next(), asked.to, m_job.validators.ifRange());
    else
        exchange->start();
    return connection;
}

void KovTransfer::onAnswered(Connection &connection)
{
    const KovAnswer &answer = connection.exchange->answer();
    if (connection.isConfirmation) {
        // Anything but more of the file means that nothing better is to be had.
        connection.isGood = answer.status == partialContentStatus && !answer.failure
            && answer.from == m_ranges.constFirst().next();
        if (connection.isGood)
            pump(connection);
        else
            complete();
        return;
    }
    const bool isAlone = m_connections.size() == 1;
    KovFailure failure;
    if (!connection.isPartial || (answer.status == okStatus && isAlone)) {
        connection.range = 0;
        connection.isPartial = false;
        failure = takeWholeFile(answer);
    } else if (answer.status == rangeNotSatisfiableStatus && isAlone) {
        m_connections.clear();
        beginAnew();
        return;
    } else {
        failure = checkRangeAnswer(
            answer, m_ranges.at(static_cast<qsizetype>(connection.range)).next(), m_job);
    }
    if (failure) {
        drop(connection, failure);
        return;
    }
    const KovDownloadRequest request = connection.exchange->request();
    m_askedElsewhere = m_askedElsewhere || request.url != m_request.url;
    m_request = request;
    connection.isGood = true;
    pump(connection);
}

KovFailure KovTransfer::takeWholeFile(const KovAnswer &answer)
{
    if (const KovFailure failure = checkFirstAnswer(answer, m_request))
        return failure;
    m_decoder.reset();
    if (!answer.contentEncoding.isEmpty()) {
        m_decoder = KovContentDecoder::create(answer.contentEncoding);
        if (!m_decoder)
            return lastingFailure(QStringLiteral("the server sent the file encoded as \"%1\"")
                                      .arg(QString::fromLatin1(answer.contentEncoding)));
    }
    m_acceptsRanges = answer.acceptsRanges && answer.contentEncoding.isEmpty();
    m_job.totalBytes = answer.totalBytes;
    m_job.validators = answer.validators;
    m_ranges = {{0, answer.totalBytes, 0}};
    m_job.ranges = m_ranges;
    return openFile(answer);
}

KovFailure KovTransfer::openFile(const KovAnswer &answer)
{
    QString error;
    const QString name = fileName(answer, m_request);
    if (!m_file && !m_job.partialPath.isEmpty())
        m_file = KovPartialFile::open(m_job.partialPath, error);
    if (m_file) {
        if (!m_file->truncate(0))
            return writeFailure();
    } else {
        m_file = m_environment.folder->createFile(name, error);
        if (!m_file)
            return lastingFailure(error);
        m_job.partialPath = m_file->path();
        m_job.path = m_environment.folder->finalPath(name);
        Q_EMIT progressStored();
    }
    const QStorageInfo disk(m_environment.folder->path());
    if (disk.isValid() && answer.totalBytes + spareBytes > disk.bytesAvailable())
        return {
            KovFailure::Kind::NoRoom,
            QStringLiteral("there is no room on the disk: the file needs %1 bytes, there are %2")
                .arg(QString::number(answer.totalBytes), QString::number(disk.bytesAvailable()))};
    return {};
}

void KovTransfer::pumpAll()
{
    // Pumping may end connections and begin others.
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

void KovTransfer::pump(Connection &connection)
{
    KovHttpExchange &exchange = *connection.exchange;
    static std::array<char, pieceBytes> piece; // only the main thread comes here
    while (connection.isGood && exchange.bytesAvailable() > 0) {
        KovRange &range = m_ranges[static_cast<qsizetype>(connection.range)];
        qint64 wanted = std::min(pieceBytes, exchange.bytesAvailable());
        if (range.to >= 0)
            wanted = std::min(wanted, range.to - range.next());
        if (wanted <= 0)
            break; // more than was asked for, or another connection takes over from here
        const qint64 allowed = m_environment.speedLimit->take(wanted);
        if (allowed == 0)
            return;
        const qint64 size = exchange.read(piece.data(), allowed);
        m_environment.speedLimit->giveBack(allowed - std::max<qint64>(0, size));
        if (size <= 0)
            break;
        if (!keep(range, piece.data(), size))
            return;
        if (!std::exchange(m_accepted, true))
            Q_EMIT accepted();
        if (m_ending)
            return;
    }
    const KovRange &range = m_ranges.at(static_cast<qsizetype>(connection.range));
    if (exchange.isFinished() || (connection.isGood && range.isComplete()))
        onBodyEnded(connection);
}

bool KovTransfer::keep(KovRange &range, const char *bytes, qint64 size)
{
    const auto write = [this, &range](const char *data, qint64 length) {
        if (!m_file->write(range.next(), data, length))
            return false;
        range.done += length;
        return true;
    };
    const auto result = m_decoder ? m_decoder->decode(bytes, size, write)
        : write(bytes, size)      ? KovContentDecoder::Result::Ok
                                  : KovContentDecoder::Result::NotKept;
    switch (result) {
    case KovContentDecoder::Result::Ok:
        return true;
    case KovContentDecoder::Result::Broken:
        end(passingFailure(QStringLiteral("the server sent a broken encoding")));
        return false;
    case KovContentDecoder::Result::NotKept:
        end(writeFailure());
        return false;
    }
    return false;
}

KovFailure KovTransfer::writeFailure() const
{
    const int error = m_file->errorNumber();
    const QString text =
        QStringLiteral("cannot write \"%1\": %2").arg(m_file->path(), m_file->errorString());
    return isDiskFull(error) ? KovFailure{KovFailure::Kind::DiskFull, printable(text)}
                             : lastingFailure(text);
}

void KovTransfer::onBodyEnded(Connection &connection)
{
    KovRange &range = m_ranges[static_cast<qsizetype>(connection.range)];
    const KovFailure failure = connection.exchange->failure();
    if (connection.isConfirmation && !connection.isGood) {
        complete();
        return;
    }
    if (!range.isComplete()) {
        if (failure || !connection.isGood) {
            drop(connection, failure ? failure : passingFailure(u"the server did not answer"_qs));
            return;
        }
        if (range.to >= 0 || (m_decoder && !m_decoder->isAtEnd())) {
            drop(connection, passingFailure(u"the connection ended before the file did"_qs));
            return;
        }
        if (!connection.isConfirmation && confirmEnd(connection))
            return;
        range.to = range.done;
        m_job.totalBytes = range.to;
    }
    close(connection);
    fetchRest();
}

bool KovTransfer::confirmEnd(const Connection &connection)
{
    // Qt takes a length of a chunk that is no number for the last one, so that a file which came in
    // chunks may be cut. A server that knows ranges can tell.
    if (!m_acceptsRanges || m_job.validators.ifRange().isEmpty() || !m_request.postData.isEmpty())
        return false;
    const size_t range = connection.range;
    m_connections.clear();
    connectTo(range).isConfirmation = true;
    return true;
}

void KovTransfer::close(const Connection &connection)
{
    m_connections.erase(
        std::find_if(m_connections.begin(), m_connections.end(),
                     [&connection](const auto &each) { return each.get() == &connection; }));
}

void KovTransfer::drop(Connection &connection, const KovFailure &failure)
{
    if (m_connections.size() == 1) {
        end(failure);
        return;
    }
    // The server allows no more, or is about to end them all.
    m_connectionsCap = static_cast<int>(m_connections.size()) - 1;
    close(connection);
}

bool KovTransfer::isFetched(size_t range) const
{
    return std::any_of(m_connections.cbegin(), m_connections.cend(),
                       [range](const auto &connection) { return connection->range == range; });
}

void KovTransfer::fetchRest()
{
    for (qsizetype i = 0; i < m_ranges.size(); ++i) {
        if (m_ranges.at(i).isComplete() || isFetched(static_cast<size_t>(i)))
            continue;
        connectTo(static_cast<size_t>(i));
        return;
    }
    if (m_connections.empty())
        complete();
    else if (connections() < m_connectionsCap)
        splitLargestRange();
}

bool KovTransfer::splitLargestRange()
{
    const auto left = [](const KovRange &range) { return range.to - range.next(); };
    const auto largest = std::max_element(
        m_ranges.begin(), m_ranges.end(),
        [&left](const KovRange &a, const KovRange &b) { return left(a) < left(b); });
    if (left(*largest) < 2 * smallestRangeBytes)
        return false;
    const qint64 middle = largest->next() + left(*largest) / 2;
    const KovRange second{middle, largest->to, 0};
    largest->to = middle;
    m_ranges.append(second);
    connectTo(static_cast<size_t>(m_ranges.size() - 1));
    return true;
}

void KovTransfer::tick()
{
    const qint64 now = m_clock.monotonicMs();
    const qint64 received = receivedBytes();
    if (now > m_lastTickMs)
        m_bytesPerSecond = (m_bytesPerSecond
                            + std::max<qint64>(0, received - m_lastReceived) * millisecondsPerSecond
                                / (now - m_lastTickMs))
            / 2;
    m_lastReceived = received;
    m_lastTickMs = now;
    if (m_ending)
        return;
    if (mayHelpToConnect())
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
                                  : lastingFailure(systemErrorString(error)));
            return;
        }
        m_job.ranges = ranges;
        Q_EMIT progressStored();
    });
}

bool KovTransfer::mayHelpToConnect()
{
    const bool isBusy = std::all_of(m_connections.cbegin(), m_connections.cend(),
                                    [](const auto &connection) { return connection->isGood; });
    if (m_connections.empty() || !isBusy || !isResumable() || connections() >= m_connectionsCap)
        return false;
    if (++m_ticksSinceConnect < ticksToMeasure)
        return false;
    m_ticksSinceConnect = 0;
    if (connections() > 1 && m_bytesPerSecond < m_speedBefore + m_speedBefore / 10) {
        m_connectionsCap = static_cast<int>(connections());
        return false;
    }
    m_speedBefore = m_bytesPerSecond;
    return m_job.totalBytes - receivedBytes() > secondsWorthAnother * m_bytesPerSecond;
}

bool KovTransfer::isResumable() const
{
    return m_acceptsRanges && m_job.totalBytes >= 0 && !m_job.validators.ifRange().isEmpty()
        && m_request.postData.isEmpty();
}

qint64 KovTransfer::receivedBytes() const
{
    qint64 sum = 0;
    for (const KovRange &range : m_ranges)
        sum += range.done;
    return sum;
}

void KovTransfer::complete()
{
    m_connections.clear();
    if (m_ranges.constFirst().to < 0) {
        m_ranges.first().to = m_ranges.constFirst().done;
        m_job.totalBytes = m_ranges.constFirst().to;
    }
    m_ending = true;
    m_file->sync(this, [this](int error) {
        if (error != 0) {
            Q_EMIT ended(lastingFailure(systemErrorString(error)));
            return;
        }
        m_job.ranges = m_ranges;
        if (!std::exchange(m_accepted, true))
            Q_EMIT accepted();
        giveFinalName();
    });
}

void KovTransfer::giveFinalName()
{
    const QString name = QFileInfo(m_job.path).fileName();
    KovDownloadFolder &folder = *m_environment.folder;
    if (folder.isHeldByBrowser(name) && m_file->path() != m_job.path
        && m_nameWaitedMs < browserLetsGoWithinMs) {
        m_nameWaitedMs += nameRetryMs;
        m_nameTimer->start(nameRetryMs);
        return;
    }
    if (m_environment.takesModificationTime) {
        const QDateTime time = toHttpDate(m_job.validators.lastModified);
        if (time.isValid())
            m_file->setModificationTime(time);
    }
    QString path = m_file->path();
    do {
        const QString freePath = folder.freePath(name);
        // Without a suffix it has a name already; a better one may have become free.
        if (!folder.namesAtOnce() || freePath == folder.finalPath(name))
            path = freePath;
        m_job.path = path;
        Q_EMIT naming();
        if (m_file->moveTo(path)) {
            m_job.partialPath.clear();
            m_finished = true;
            Q_EMIT ended({});
            return;
        }
        // Something may have come into its way just now.
    } while (m_file->errorNumber() == 0);
    Q_EMIT ended(lastingFailure(
        QStringLiteral("cannot rename \"%1\": %2").arg(m_file->path(), m_file->errorString())));
}

void KovTransfer::stop() { end({}); }

void KovTransfer::end(const KovFailure &failure)
{
    if (std::exchange(m_ending, true))
        return;
    for (const auto &connection : m_connections)
        connection->exchange->abort();
    if (!m_file) {
        QMetaObject::invokeMethod(
            this, [this, failure] { Q_EMIT ended(failure); }, Qt::QueuedConnection);
        return;
    }
    m_file->sync(this, [this, failure](int error) {
        if (error == 0)
            m_job.ranges = m_ranges;
        Q_EMIT ended(failure);
    });
}
