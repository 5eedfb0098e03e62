// What it costs to bring a new-downloads request onto the link and off it again: as variant hashes
// and as the bytes of a message. Each shape handles the same downloads and keeps all results of a
// step until the step is done, so that the shapes differ in nothing but the size of a request.
// Beside it, in the same run, the same texts written and read with a bare QDataStream.

#include "abstractnewdownloadsrequest.h"
#include "cookiestring.h"

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
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int downloadsCount = 10'000;
constexpr int rounds = 9;
constexpr QDataStream::Version linkStreamVersion = QDataStream::Qt_5_12;

struct Shape {
    int requests = 0;
    int downloadsPerRequest = 0;
};
constexpr std::array shapes{Shape{10'000, 1}, Shape{100, 100}, Shape{1, 10'000}};

/// Nanoseconds per download, the least of all rounds.
struct Costs {
    double encode = std::numeric_limits<double>::max();
    double write = std::numeric_limits<double>::max();
    double read = std::numeric_limits<double>::max();
    double decode = std::numeric_limits<double>::max();
    qsizetype bytes = 0;
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

/// Measures the time that this program's own thread was computing, so that other programs of the
/// machine disturb as little as possible.
class ComputingTime {
public:
    double nanosecondsPerDownload() const { return (now() - m_start) / downloadsCount; }

private:
    static double now()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
    }

    double m_start = now();
};

void check(bool ok, const char *what)
{
    if (!ok) {
        std::fprintf(stderr, "wrong result: %s\n", what);
        std::exit(1);
    }
}

/// Each step takes what the one before it left.
void measureLink(const QList<AbstractNewDownloadsRequest> &requests, Costs &costs)
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
    for (const QVariantHash &hash : hashes) {
        QByteArray message;
        QDataStream stream(&message, QIODevice::WriteOnly);
        stream.setVersion(linkStreamVersion);
        stream << hash;
        messages.push_back(std::move(message));
    }
    costs.write = std::min(costs.write, writing.nanosecondsPerDownload());
    costs.bytes = 0;
    for (const QByteArray &message : messages)
        costs.bytes += message.size();

    std::vector<QVariantHash> received;
    received.reserve(count);
    const ComputingTime reading;
    for (const QByteArray &message : messages) {
        QDataStream stream(message);
        stream.setVersion(linkStreamVersion);
        QVariantHash hash;
        stream >> hash;
        received.push_back(std::move(hash));
    }
    costs.read = std::min(costs.read, reading.nanosecondsPerDownload());

    QList<AbstractNewDownloadsRequest> decoded;
    decoded.reserve(requests.size());
    const ComputingTime decoding;
    for (const QVariantHash &hash : received)
        decoded.append(toNewDownloadsRequest(hash));
    costs.decode = std::min(costs.decode, decoding.nanosecondsPerDownload());
    check(decoded == requests, "the decoded requests");
}

/// The same texts, nothing else, in a message per request.
void measureBareStream(const QList<AbstractNewDownloadsRequest> &requests, Costs &costs)
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
    check(received.size() == downloadsCount
              && received.back().source.url == requests.last().downloads.last().info->source.url,
          "what the bare stream read");
}

void print(const char *name, int downloadsPerRequest, const Costs &costs, const Costs &base)
{
    const double all = costs.encode + costs.write + costs.read + costs.decode;
    std::printf("%-12s %9d %9.0f %9.0f %9.0f %9.0f %9.0f %11.2f %9.0f\n", name, downloadsPerRequest,
                costs.encode, costs.write, costs.read, costs.decode, all,
                all / (base.encode + base.write + base.read + base.decode),
                static_cast<double>(costs.bytes) / downloadsCount);
}

void compare(const char *title, MakeDownload makeDownload)
{
    std::array<Costs, shapes.size()> link;
    std::array<Costs, shapes.size()> bare;
    std::array<QList<AbstractNewDownloadsRequest>, shapes.size()> requests;
    for (size_t i = 0; i < shapes.size(); ++i)
        requests[i] = makeRequests(makeDownload, shapes[i]);
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < shapes.size(); ++i) {
            measureLink(requests[i], link[i]);
            measureBareStream(requests[i], bare[i]);
        }
    }
    std::printf("%s: %d downloads, ns of computing per download (least of %d rounds)\n", title,
                downloadsCount, rounds);
    std::printf("%-12s %9s %9s %9s %9s %9s %9s %11s %9s\n", "", "per req.", "encode", "write",
                "read", "decode", "all", "to 1/req.", "bytes");
    for (size_t i = 0; i < shapes.size(); ++i)
        print("link", shapes[i].downloadsPerRequest, link[i], link[0]);
    for (size_t i = 0; i < shapes.size(); ++i) {
        bare[i].encode = bare[i].decode = 0;
        print("bare stream", shapes[i].downloadsPerRequest, bare[i], bare[0]);
    }
    std::printf("\n");
}

} // namespace

int main()
{
    compare("A URL and nothing else", smallDownload);
    compare("As caught in a browser", caughtDownload);
    return 0;
}
