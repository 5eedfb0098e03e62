// The cost of encoding a new-downloads request for the link and decoding it: to variant hashes, and
// to the bytes of a message, with the link's codecs. Each shape handles the same downloads and
// keeps all results of a step until the step is done, so that the shapes differ only in the size of
// a request. For comparison, in the same run: the hashes with QDataStream's own operators, and only
// the texts with a bare QDataStream.

#include "abstractnewdownloadsrequest.h"
#include "cookiestring.h"
#include "qtvhbodycodec.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QList>
#include <QString>
#include <QVariantHash>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <malloc.h>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int downloadsCount = 10'000;
constexpr int rounds = 5;
constexpr QDataStream::Version linkStreamVersion = QDataStream::Qt_5_12;

struct Shape {
    int requests = 0;
    int downloadsPerRequest = 0;
};
constexpr std::array shapes{Shape{10'000, 1}, Shape{100, 100}, Shape{1, 10'000}};
/// The shape that the others are compared with.
constexpr size_t baseShape = 1;

/// Nanoseconds per download, the minimum of all rounds.
struct Costs {
    double encode = std::numeric_limits<double>::max();
    double write = std::numeric_limits<double>::max();
    double read = std::numeric_limits<double>::max();
    double decode = std::numeric_limits<double>::max();
    qsizetype bytes = 0;
};

/// The functions that encode a hash as the bytes of a message, and decode it.
struct HashCodec {
    QByteArray (*write)(const QVariantHash &hash) = nullptr;
    QVariantHash (*read)(const QByteArray &message) = nullptr;
};

constexpr HashCodec linkCodec{
    QtVhBodyCodec::toDataStream,
    [](const QByteArray &message) {
        return QtVhBodyCodec::fromDataStream(message).value_or(QVariantHash());
    },
};

constexpr HashCodec qtCodec{
    [](const QVariantHash &hash) {
        QByteArray message;
        QDataStream stream(&message, QIODevice::WriteOnly);
        stream.setVersion(linkStreamVersion);
        stream << hash;
        return message;
    },
    [](const QByteArray &message) {
        QDataStream stream(message);
        stream.setVersion(linkStreamVersion);
        QVariantHash hash;
        stream >> hash;
        return hash;
    },
};

using MakeDownload = AbstractDownloadPersistentInfo (*)(int number);

AbstractDownloadPersistentInfo smallDownload(int number)
{
    AbstractDownloadPersistentInfo info;
    info.source.url = QUrl(QStringLiteral("https://files.example.org/%1.zip").arg(number));
    return info;
}

AbstractDownloadPersistentInfo caughtDownload(int number)
{
    AbstractDownloadPersistentInfo info = smallDownload(number);
    info.originatorsNamesChain = QStringList{QStringLiteral("Browser extension")};
    info.createdBy = AbstractDownloadCreatedBy::Browser;
    info.source.referer = QStringLiteral("https://www.example.org/downloads/list?page=17");
    info.source.webPageUrl = QUrl(info.source.referer);
    info.source.cookies = cookiesFromString(
        QStringLiteral("session=0123456789abcdef0123456789abcdef; theme=dark; lang=en-US"), u';');
    info.userAgent = QStringLiteral("Mozilla/5.0 (X11; Linux x86_64; rv:128.0) Gecko/20100101 "
                                    "Firefox/128.0");
    info.preferredFileTitle = QStringLiteral("Report of the year, part %1.zip").arg(number);
    return info;
}

QList<AbstractNewDownloadsRequest> makeRequests(MakeDownload makeDownload, Shape shape)
{
    QList<AbstractNewDownloadsRequest> requests;
    int number = 0;
    for (int i = 0; i < shape.requests; ++i) {
        AbstractNewDownloadsRequest request;
        for (int j = 0; j < shape.downloadsPerRequest; ++j)
            request.downloads.append(
                {std::make_shared<AbstractDownloadPersistentInfo>(makeDownload(number++))});
        request.selectedDownloads = QBitArray(shape.downloadsPerRequest, true);
        requests.append(request);
    }
    return requests;
}

/// Measures the CPU time of this thread, so that other programs disturb as little as possible.
/// Trims the heap first: otherwise a step would pay for memory freed by the previous one.
class ComputingTime {
public:
    ComputingTime()
    {
        ::malloc_trim(0);
        m_start = now();
    }
    double nanosecondsPerDownload() const { return (now() - m_start) / downloadsCount; }

private:
    static double now()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
    }

    double m_start = 0;
};

void check(bool ok, const char *what)
{
    if (!ok) {
        std::fprintf(stderr, "wrong result: %s\n", what);
        std::exit(1);
    }
}

/// Each step uses the previous one's results.
void measureHashes(const HashCodec &codec, const QList<AbstractNewDownloadsRequest> &requests,
                   Costs &costs)
{
    const auto count = static_cast<size_t>(requests.size());
    std::vector<QVariantHash> hashes;
    hashes.reserve(count);
    const ComputingTime encoding;
    for (const AbstractNewDownloadsRequest &request : requests)
        hashes.push_back(toVariantHash(request));
    costs.encode = std::min(costs.encode, encoding.nanosecondsPerDownload());

    std::vector<QByteArray> messages;
    messages.reserve(count);
    const ComputingTime writing;
    for (const QVariantHash &hash : hashes)
        messages.push_back(codec.write(hash));
    costs.write = std::min(costs.write, writing.nanosecondsPerDownload());
    costs.bytes = 0;
    for (const QByteArray &message : messages)
        costs.bytes += message.size();

    std::vector<QVariantHash> received;
    received.reserve(count);
    const ComputingTime reading;
    for (const QByteArray &message : messages)
        received.push_back(codec.read(message));
    costs.read = std::min(costs.read, reading.nanosecondsPerDownload());

    QList<AbstractNewDownloadsRequest> decoded;
    decoded.reserve(requests.size());
    const ComputingTime decoding;
    for (const QVariantHash &hash : received)
        decoded.append(toNewDownloadsRequest(hash));
    costs.decode = std::min(costs.decode, decoding.nanosecondsPerDownload());
    check(decoded == requests, "the decoded requests");
}

/// Only the same texts, in one message per request; everything counts as writing and reading.
void measureTexts(const QList<AbstractNewDownloadsRequest> &requests, Costs &costs)
{
    std::vector<QByteArray> messages;
    messages.reserve(static_cast<size_t>(requests.size()));
    const ComputingTime writing;
    for (const AbstractNewDownloadsRequest &request : requests) {
        QByteArray message;
        QDataStream stream(&message, QIODevice::WriteOnly);
        for (const AbstractNewDownloadRequest &download : request.downloads) {
            const AbstractDownloadPersistentInfo &info = *download.info;
            stream << info.originatorsNamesChain << info.source.url << info.source.referer
                   << info.source.webPageUrl << info.userAgent << info.preferredFileTitle
                   << cookiesToString(info.source.cookies, u';');
        }
        messages.push_back(std::move(message));
    }
    costs.write = std::min(costs.write, writing.nanosecondsPerDownload());
    costs.bytes = 0;
    for (const QByteArray &message : messages)
        costs.bytes += message.size();

    std::vector<AbstractDownloadPersistentInfo> received;
    received.reserve(downloadsCount);
    const ComputingTime reading;
    for (const QByteArray &message : messages) {
        QDataStream stream(message);
        while (!stream.atEnd()) {
            AbstractDownloadPersistentInfo info;
            QString cookies;
            stream >> info.originatorsNamesChain >> info.source.url >> info.source.referer
                >> info.source.webPageUrl >> info.userAgent >> info.preferredFileTitle >> cookies;
            info.source.cookies = cookiesFromString(cookies, u';');
            received.push_back(std::move(info));
        }
    }
    costs.read = std::min(costs.read, reading.nanosecondsPerDownload());
    costs.encode = costs.decode = 0;
    check(received.size() == downloadsCount
              && received.back().source.url == requests.last().downloads.last().info->source.url,
          "the texts that were read");
}

void print(const char *name, const std::array<Costs, shapes.size()> &costs)
{
    const auto encoding = [](const Costs &of) { return of.encode + of.write; };
    const auto decoding = [](const Costs &of) { return of.read + of.decode; };
    const Costs &base = costs[baseShape];
    for (size_t i = 0; i < shapes.size(); ++i) {
        const Costs &of = costs[i];
        std::printf("%-15s %8d %8.0f %8.0f %8.0f %8.2f %8.0f %8.0f %8.0f %8.2f %8.0f\n", name,
                    shapes[i].downloadsPerRequest, of.encode, of.write, encoding(of),
                    encoding(of) / encoding(base), of.read, of.decode, decoding(of),
                    decoding(of) / decoding(base), static_cast<double>(of.bytes) / downloadsCount);
    }
}

void compare(const char *title, MakeDownload makeDownload)
{
    std::array<Costs, shapes.size()> link;
    std::array<Costs, shapes.size()> qt;
    std::array<Costs, shapes.size()> texts;
    std::array<QList<AbstractNewDownloadsRequest>, shapes.size()> requests;
    for (size_t i = 0; i < shapes.size(); ++i)
        requests[i] = makeRequests(makeDownload, shapes[i]);
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < shapes.size(); ++i) {
            measureHashes(linkCodec, requests[i], link[i]);
            measureHashes(qtCodec, requests[i], qt[i]);
            measureTexts(requests[i], texts[i]);
        }
    }
    std::printf("%s: %d downloads, ns of computing per download (least of %d rounds)\n", title,
                downloadsCount, rounds);
    std::printf("%-15s %8s %8s %8s %8s %8s %8s %8s %8s %8s %8s\n", "", "per req.", "to hash",
                "to bytes", "encoding", "to 100", "to hash", "to rec.", "decoding", "to 100",
                "bytes");
    print("link", link);
    print("hashes by Qt", qt);
    print("texts alone", texts);
    std::printf("\n");
}

} // namespace

int main()
{
    compare("A URL and nothing else", smallDownload);
    compare("As caught in a browser", caughtDownload);
    return 0;
}
