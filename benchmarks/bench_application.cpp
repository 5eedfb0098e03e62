// The cost of the round trip from the browser to the application, compared with a bare relay of as
// many bytes through the same pipes and sockets (relayfloor.cpp), alternating in one run.

#include "applicationend.h"
#include "applink.h"
#include "childprocess.h"
#include "frame.h"
#include "statistics.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <thread>

namespace {

constexpr int rounds = 21;
constexpr int roundTrips = 500;
constexpr int spacedRoundTrips = 20;
constexpr auto pause = std::chrono::milliseconds(2);
constexpr int launchRounds = 7;
constexpr int bulkRounds = 7;
constexpr std::array bulkSizes = {100, 1000, 10'000};
constexpr int hugeSize = 100'000;

/// Whether the downloads of a task share texts, like those of one page.
enum class Texts { Common, Different };

/// Its URL is unreachable, so that the launched application is not busy.
QByteArray download(int number, Texts texts)
{
    const QByteArray own = texts == Texts::Different ? QByteArray::number(number) : QByteArray();
    return R"({"url":"http://127.0.0.1:9/folder/)" + QByteArray::number(number)
        + R"(/archive-1.2.3.tar.gz","suggestedName":"archive-)" + QByteArray::number(number)
        + R"(.tar.gz","httpReferer":"https://www.example.org/downloads/list?page=17)" + own
        + R"(","documentUrl":"https://www.example.org/downloads/list?page=17)" + own
        + R"(","userAgent":"Mozilla/5.0 (X11; Linux x86_64; rv:128.0) Gecko/20100101 )"
          R"(Firefox/128.0)"
        + own
        + R"(","httpCookies":"session=0123456789abcdef0123456789abcdef; theme=dark; lang=en-US)"
        + own + R"(","originalUrl":"https://www.example.org/get/)" + QByteArray::number(number)
        + R"(","fileSize":"123456789"})";
}

QByteArray task(int downloads, Texts texts = Texts::Common)
{
    QByteArray items;
    for (int i = 0; i < downloads; ++i)
        items += (i ? "," : "") + download(i, texts);
    return framed(R"({"id":"1","type":"create_downloads","create_downloads":{"downloads":{"item":[)"
                  + items
                  + R"(]},"catchedDownloads":"1","waitResponse":"1","ignoreSettings":"0"}})");
}

/// For each measure, one value per round.
struct Samples {
    std::vector<double> start;
    std::vector<double> trip;
    std::vector<double> spacedTrip;
    std::vector<double> push;
};

/// The time from the start of a process until it passes on the settings of the running application.
void runConversation(const QString &program, const QStringList &arguments, ApplicationEnd &peer,
                     Samples &samples)
{
    const QByteArray message = task(1);
    QElapsedTimer timer;
    timer.start();
    ChildProcess child(program, arguments);
    child.roundTrip(message);
    samples.start.push_back(microseconds(timer));

    const auto trips = [&](int count, bool spaced) {
        std::vector<double> times;
        for (int i = 0; i < count; ++i) {
            if (spaced)
                std::this_thread::sleep_for(pause);
            times.push_back(child.roundTrip(message));
        }
        return median(times);
    };
    samples.trip.push_back(trips(roundTrips, false));
    samples.spacedTrip.push_back(trips(spacedRoundTrips, true));

    // Settings are sent only after a query.
    child.write(framed(R"({"id":"2","type":"query_settings"})"));
    child.takeAnswer();
    std::vector<double> pushes;
    for (int i = 0; i < spacedRoundTrips; ++i) {
        std::this_thread::sleep_for(pause);
        timer.start();
        peer.changeSetting();
        child.takeAnswer();
        pushes.push_back(microseconds(timer));
    }
    samples.push.push_back(median(pushes));
}

void report(const char *what, const std::vector<double> &host, const std::vector<double> &floor,
            double aim = 0)
{
    const double hostMedian = median(host);
    const double floorMedian = median(floor);
    std::printf("%-44s host %8.1f us  floor %8.1f us  ratio %.2f", what, hostMedian, floorMedian,
                hostMedian / floorMedian);
    if (aim > 0)
        std::printf("  (aim: at most %.1f)", aim);
    std::printf("\n");
}

/// A quick answer is the host's own: an error.
void requireDownloads(const ApplicationEnd &application)
{
    if (application.sizes().message > 0)
        return;
    std::fprintf(stderr, "no download reached the application\n");
    std::exit(1);
}

void compareWithFloor(const QString &host)
{
    const QString relay = QCoreApplication::applicationDirPath() + QStringLiteral("/relayfloor");
    ApplicationEnd application(appServerName());
    // The floor sends as many bytes as the host did.
    qsizetype answerBody = 0;
    qsizetype pushBody = 0;
    {
        Samples ignored;
        runConversation(host, {}, application, ignored);
        ChildProcess child(host);
        child.write(task(1));
        answerBody = child.takeAnswer() - qsizetype(sizeof(quint32));
        child.write(framed(R"({"id":"2","type":"query_settings"})"));
        pushBody = child.takeAnswer() - qsizetype(sizeof(quint32));
    }
    requireDownloads(application);
    const ExchangeSizes sizes = application.sizes();
    std::printf("Task %d bytes; to the application %lld, from it %lld; answer %lld\n",
                int(task(1).size()), sizes.message, sizes.answer, answerBody);

    Samples hostSamples;
    Samples floorSamples;
    const QString bareName = QStringLiteral("bare");
    for (int round = 0; round < rounds; ++round) {
        ApplicationEnd bare(bareName, sizes);
        runConversation(relay,
                        {bareName, QString::number(sizes.message), QString::number(sizes.answer),
                         QString::number(answerBody), QString::number(sizes.change),
                         QString::number(pushBody)},
                        bare, floorSamples);
        runConversation(host, {}, application, hostSamples);
    }
    report("caught download, task in to answer out", hostSamples.trip, floorSamples.trip, 1.8);
    report("the same after a pause of 2 ms", hostSamples.spacedTrip, floorSamples.spacedTrip);
    report("start to a caught download answered", hostSamples.start, floorSamples.start);
    report("a setting changed, to the push on stdout", hostSamples.push, floorSamples.push);
}

/// The time from the start of the host, which starts the application, to the answer.
void measureLaunch(const QString &host)
{
    const QString application = QFileInfo(host).path() + QStringLiteral("/kov");
    std::vector<double> times;
    // Each home folder is kept until the end: a quitting application still writes there.
    const QTemporaryDir homes;
    for (int round = 0; round < launchRounds; ++round) {
        const QString home = homes.filePath(QString::number(round));
        QDir().mkpath(home);
        qputenv("HOME", home.toLocal8Bit());
        qputenv("TMPDIR", home.toLocal8Bit());
        QElapsedTimer timer;
        timer.start();
        ChildProcess child(host);
        child.roundTrip(task(1));
        times.push_back(microseconds(timer));
        if (QProcess::execute(application, {QStringLiteral("quit")}) != 0) {
            std::fprintf(stderr, "the application did not run\n");
            std::exit(1);
        }
    }
    std::printf("%-44s host %8.1f us\n", "the same, the application launched", median(times));
}

/// The CPU time of this process, which contains the application's end, in microseconds.
double ownComputingTime()
{
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

/// The time and memory for a task larger than any browser's, and the memory that is kept after it.
void measureHuge(const QString &host, Texts texts, const char *kind)
{
    ChildProcess fresh(host);
    fresh.roundTrip(task(1));
    const long before = fresh.statusKibibytes("VmRSS");
    const double computedBefore = fresh.computingTime();
    const QByteArray message = task(hugeSize, texts);
    fresh.roundTrip(message);
    const double computed = fresh.computingTime() - computedBefore;
    const long peak = fresh.statusKibibytes("VmHWM");
    fresh.roundTrip(task(1));
    std::printf("a task of %d downloads%s, %lld bytes: %.2f us of computing per download  (aim: at "
                "most 10); at its peak %.1f bytes of memory for each  (aim: at most 6), afterwards "
                "%.1f MiB  (aim: at most 10)\n",
                hugeSize, kind, message.size(), computed / hugeSize,
                static_cast<double>(peak - before) * 1024 / static_cast<double>(message.size()),
                static_cast<double>(fresh.statusKibibytes("VmRSS") - before) / 1024);
}

void measureBulk(const QString &host)
{
    const ApplicationEnd application(appServerName());
    ChildProcess child(host);
    std::array<std::vector<double>, bulkSizes.size()> times;
    std::array<std::vector<double>, bulkSizes.size()> hostComputing;
    std::array<std::vector<double>, bulkSizes.size()> allComputing;
    for (int round = -1; round < bulkRounds; ++round) {
        for (size_t i = 0; i < bulkSizes.size(); ++i) {
            const QByteArray message = task(bulkSizes[i]);
            const int tasks = bulkSizes.back() / bulkSizes[i];
            const double hostBefore = child.computingTime();
            const double ownBefore = ownComputingTime();
            double sum = 0;
            for (int n = 0; n < tasks; ++n)
                sum += child.roundTrip(message);
            const double computed = child.computingTime() - hostBefore;
            if (round < 0) // warms up
                continue;
            times[i].push_back(sum / bulkSizes.back());
            hostComputing[i].push_back(computed / bulkSizes.back());
            allComputing[i].push_back((computed + ownComputingTime() - ownBefore)
                                      / bulkSizes.back());
        }
    }
    requireDownloads(application);
    for (size_t i = 0; i < bulkSizes.size(); ++i)
        std::printf("%6d downloads in one task: %6.2f us per download  (aim: at most 10), of which "
                    "%.2f us computing, %.2f us of that in the host\n",
                    bulkSizes[i], median(times[i]), median(allComputing[i]),
                    median(hostComputing[i]));
    std::printf("from 100 to 10,000 it grows by the factor %.2f, the computing by %.2f, the host's "
                "by %.2f  (aim: at most 1.10)\n",
                median(times.back()) / median(times.front()),
                median(allComputing.back()) / median(allComputing.front()),
                median(hostComputing.back()) / median(hostComputing.front()));

    measureHuge(host, Texts::Common, "");
    measureHuge(host, Texts::Different, " all different");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString host = qEnvironmentVariable("KOVALO_HOST", QStringLiteral(KOVALO_HOST_PATH));
    // Isolates the measurement from other hosts' settings and a running application.
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("TMPDIR", home.path().toLocal8Bit());
    compareWithFloor(host);
    measureBulk(host);
    measureLaunch(host);
}
