// The cost of the host compared with the floor (floor.cpp), and with the same floor without unused
// libraries, alternating in one run.

#include "childprocess.h"
#include "frame.h"
#include "statistics.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

constexpr int rounds = 41;
constexpr int roundTrips = 500;
constexpr int spacedRoundTrips = 20;
constexpr auto pause = std::chrono::milliseconds(2);
constexpr int pipelined = 10'000;

/// The extension's message, framed.
QByteArray handshake()
{
    return framed(R"({"id":"1","type":"handshake","handshake":{"api_version":"3","browser":)"
                  R"("Mozilla/5.0 (X11; Linux x86_64; rv:128.0) Gecko/20100101 Firefox/128.0"}})");
}

/// With all options, of 285 bytes.
QByteArray longHandshake()
{
    return framed(R"({"id":"1","type":"handshake","handshake":{"api_version":"1",)"
                  R"("browser":"Mozilla/5.0 (X11; Linux x86_64) Chromium",)"
                  R"("response_add_crlf":"0","response_send_data_len_as_string":"0",)"
                  R"("uri_encoding_for_rcv":"0","uri_encoding_for_send":"0",)"
                  R"("base64_encoding_for_rcv":"0","base64_encoding_for_send":"0"}})");
}

enum Measure {
    Start,
    RoundTrip,
    LongRoundTrip,
    SpacedRoundTrip,
    Pipelined,
    Exit,
    Memory,
    OwnMemory,
    PipelinedMemory,
    MeasureCount
};

/// For each measure, one value per round.
using Samples = std::array<std::vector<double>, MeasureCount>;

void finish(ChildProcess &child, const QString &program)
{
    if (!child.finish()) {
        std::fprintf(stderr, "%s did not end cleanly\n", qPrintable(program));
        std::exit(1);
    }
}

/// The life of a process like a real one's: started, some messages, ended.
void runConversation(const QString &program, Samples &samples)
{
    const QByteArray message = longHandshake();
    QElapsedTimer timer;
    timer.start();
    ChildProcess child(program);
    child.roundTrip(message);
    samples[Start].push_back(microseconds(timer));

    const auto trips = [&child](const QByteArray &asked) {
        std::vector<double> times;
        times.reserve(roundTrips);
        for (int i = 0; i < roundTrips; ++i)
            times.push_back(child.roundTrip(asked));
        return median(times);
    };
    samples[RoundTrip].push_back(trips(handshake()));
    samples[LongRoundTrip].push_back(trips(message));

    std::vector<double> spaced;
    for (int i = 0; i < spacedRoundTrips; ++i) {
        std::this_thread::sleep_for(pause);
        spaced.push_back(child.roundTrip(message));
    }
    samples[SpacedRoundTrip].push_back(median(spaced));

    const auto memory = [&child](const char *name) {
        return static_cast<double>(child.statusKibibytes(name));
    };
    samples[Memory].push_back(memory("VmHWM"));
    samples[OwnMemory].push_back(memory("RssAnon"));

    timer.start();
    finish(child, program);
    samples[Exit].push_back(microseconds(timer));
}

void runPipelined(const QString &program, Samples &samples)
{
    const QByteArray message = longHandshake();
    ChildProcess child(program);
    child.write(message);
    const qsizetype answerSize = child.takeAnswer();

    QElapsedTimer timer;
    timer.start();
    child.exchange(message.repeated(pipelined), answerSize * pipelined);
    samples[Pipelined].push_back(microseconds(timer) / pipelined);
    samples[PipelinedMemory].push_back(static_cast<double>(child.statusKibibytes("VmHWM")));
    finish(child, program);
}

/// An aim of 0 means that there is none.
void report(const char *what, const char *unit, Measure measure, const Samples &host,
            const Samples &floor, const Samples &coreFloor, double aim)
{
    const double hostMedian = median(host[measure]);
    const double floorMedian = median(floor[measure]);
    std::printf("%-36s host %8.1f %s  floor %8.1f %s  ratio %.2f", what, hostMedian, unit,
                floorMedian, unit, hostMedian / floorMedian);
    if (aim > 0)
        std::printf("  (aim: at most %.2f)", aim);
    if (!coreFloor[measure].empty())
        std::printf("  with Core alone %.1f %s", median(coreFloor[measure]), unit);
    std::printf("\n");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // Isolates the measurement from other hosts' settings and a running application.
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("TMPDIR", home.path().toLocal8Bit());
    const QString host = qEnvironmentVariable("KOVALO_HOST", QStringLiteral(KOVALO_HOST_PATH));
    const QString floor = QCoreApplication::applicationDirPath() + QStringLiteral("/floor");
    const QString coreFloor = QCoreApplication::applicationDirPath() + QStringLiteral("/corefloor");

    Samples hostSamples;
    Samples floorSamples;
    Samples coreFloorSamples;
    for (int round = -1; round < rounds; ++round) {
        runConversation(floor, floorSamples);
        runConversation(host, hostSamples);
        runConversation(coreFloor, coreFloorSamples);
        runPipelined(floor, floorSamples);
        runPipelined(host, hostSamples);
        if (round < 0) // warms the caches
            hostSamples = floorSamples = coreFloorSamples = {};
    }
    const auto line = [&](const char *what, const char *unit, Measure measure, double aim) {
        report(what, unit, measure, hostSamples, floorSamples, coreFloorSamples, aim);
    };
    std::printf("Medians of %d runs of each, taking turns\n", rounds);
    line("start to first answer", "us", Start, 1);
    line("handshake as the extension sends it", "us", RoundTrip, 1.25);
    line("handshake of 285 bytes", "us", LongRoundTrip, 1.25);
    line("the same after a pause of 2 ms", "us", SpacedRoundTrip, 1.25);
    line("one of 10,000 pipelined handshakes", "us", Pipelined, 2.5);
    line("end of input to exit", "us", Exit, 1.2);
    line("peak memory", "kB", Memory, 1.1);
    line("of it neither shared nor from a file", "kB", OwnMemory, 1.1);
    line("peak memory with 10,000 pipelined", "kB", PipelinedMemory, 0);
}
