// What the host costs beside the floor (floor.cpp), the two taking turns in one run.

#include "childprocess.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int rounds = 41;
constexpr int roundTrips = 500;
constexpr int pipelined = 10'000;

/// As the extension sends it, framed.
QByteArray handshake()
{
    const QByteArray body = R"({"id":"1","type":"handshake","handshake":{"api_version":"1",)"
                            R"("browser":"Mozilla/5.0 (X11; Linux x86_64) Chromium",)"
                            R"("response_add_crlf":"0","response_send_data_len_as_string":"0",)"
                            R"("uri_encoding_for_rcv":"0","uri_encoding_for_send":"0",)"
                            R"("base64_encoding_for_rcv":"0","base64_encoding_for_send":"0"}})";
    const auto length = qToLittleEndian(static_cast<quint32>(body.size()));
    return QByteArray(reinterpret_cast<const char *>(&length), sizeof length) + body;
}

/// Reads one answer and returns its size with its length prefix.
qsizetype takeAnswer(ChildProcess &child)
{
    const QByteArray prefix = child.read(sizeof(quint32));
    const auto length = qFromLittleEndian<quint32>(prefix.constData());
    child.read(length);
    return prefix.size() + static_cast<qsizetype>(length);
}

enum Measure { Start, RoundTrip, Pipelined, Exit, Memory, MeasureCount };

/// All values of one measure, of which the median counts.
using Samples = std::array<std::vector<double>, MeasureCount>;

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double microseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1000;
}

void runOnce(const QString &program, Samples &samples)
{
    const QByteArray message = handshake();
    QElapsedTimer timer;
    timer.start();
    ChildProcess child(program);
    child.write(message);
    const qsizetype answerSize = takeAnswer(child);
    samples[Start].push_back(microseconds(timer));

    std::vector<double> trips;
    for (int i = 0; i < roundTrips; ++i) {
        timer.start();
        child.write(message);
        takeAnswer(child);
        trips.push_back(microseconds(timer));
    }
    samples[RoundTrip].push_back(median(trips));

    timer.start();
    child.exchange(message.repeated(pipelined), answerSize * pipelined);
    samples[Pipelined].push_back(microseconds(timer) / pipelined);

    timer.start();
    const ChildUsage usage = child.finish();
    samples[Exit].push_back(microseconds(timer));
    samples[Memory].push_back(static_cast<double>(usage.peakMemory));
    if (!usage.exitedCleanly) {
        std::fprintf(stderr, "%s did not end cleanly\n", qPrintable(program));
        std::exit(1);
    }
}

void report(const char *what, const char *unit, Measure measure, const Samples &host,
            const Samples &floor, double aim)
{
    const double hostMedian = median(host[measure]);
    const double floorMedian = median(floor[measure]);
    std::printf("%-34s host %9.1f %s  floor %9.1f %s  ratio %.2f (aim: at most %.2f)\n", what,
                hostMedian, unit, floorMedian, unit, hostMedian / floorMedian, aim);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // Neither another host's settings nor a running application disturb the measurement.
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("TMPDIR", home.path().toLocal8Bit());
    const QString host = qEnvironmentVariable("KOVALO_HOST", QStringLiteral(KOVALO_HOST_PATH));
    const QString floor = QCoreApplication::applicationDirPath() + QStringLiteral("/floor");

    Samples hostSamples;
    Samples floorSamples;
    for (int round = -1; round < rounds; ++round) {
        runOnce(floor, floorSamples);
        runOnce(host, hostSamples);
        if (round < 0) // warms the caches
            hostSamples = floorSamples = {};
    }
    std::printf("Medians of %d runs of each, taking turns\n", rounds);
    report("start to first answer", "us", Start, hostSamples, floorSamples, 1.25);
    report("round trip of a handshake", "us", RoundTrip, hostSamples, floorSamples, 1.25);
    report("one of 10,000 pipelined handshakes", "us", Pipelined, hostSamples, floorSamples, 5);
    report("end of input to exit", "us", Exit, hostSamples, floorSamples, 1.5);
    report("peak memory", "kB", Memory, hostSamples, floorSamples, 1.3);
}
