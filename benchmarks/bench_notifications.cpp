// The cost of a notification about a browser's request compared with an unknown task of the same
// size, alternating in one host; and the host's memory after very many notifications.

#include "childprocess.h"
#include "frame.h"
#include "statistics.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>

namespace {

constexpr int rounds = 41;
constexpr int tasksPerRound = 5000;
constexpr int manyTasks = 1'000'000;
constexpr int tasksPerSample = 10'000;
constexpr int samplesPerLine = 10;
constexpr int pagesCount = 50;
constexpr quint32 seed = 20260101;

constexpr auto notificationType = "network_request_notification";
/// As long as the other.
constexpr auto unknownType = "network_request_notificatiox";

/// Notifications like a browser's: each request begins, has a response, and ends; occasionally one
/// is redirected, or a tab navigates.
class Browser {
public:
    explicit Browser(const char *type) : m_type(type) { }

    QByteArray tasks(int count)
    {
        QByteArray frames;
        while (count-- > 0)
            frames += framed(next());
        return frames;
    }

private:
    QByteArray next()
    {
        const auto one = below(100);
        if (one == 0)
            return task("tab_navigated", page(), page());
        if (m_begun == 0 || one < 34) {
            ++m_begun;
            return task("request", page(), "GET", newId(), requestHeaders());
        }
        if (one < 37)
            return task("redirect", page(), "https://cdn.example.org/elsewhere", oldId());
        if (one < 67)
            return task("response", page(), "200", oldId(), {}, responseHeaders());
        return task(one < 97 ? "completed" : "failed", page(), {}, oldId());
    }

    QByteArray task(const QByteArray &what, const QByteArray &pageUrl, const QByteArray &data,
                    const QByteArray &requestId = {}, const QByteArray &requestHeaders = {},
                    const QByteArray &responseHeaders = {}) const
    {
        return R"({"id":"1","type":")" + m_type + R"(",")" + notificationType + R"(":{"type":")"
            + what + R"(","url":"https://cdn.example.org/v/)" + requestId
            + R"(/segment-00017.m4s?token=0123456789abcdef","srcTabUrl":")" + pageUrl
            + R"(","requestId":")" + requestId + R"(","requestHeaders":")" + requestHeaders
            + R"(","responseHeaders":")" + responseHeaders + R"(","data":")" + data + R"("}})";
    }

    QByteArray requestHeaders()
    {
        return R"(User-Agent: Mozilla/5.0 (X11; Linux x86_64) Gecko/20100101\r\nAccept: */*\r\n)"
               R"(Accept-Language: en-US,en;q=0.5\r\nReferer: https://www.example.org/\r\n)"
               R"(Cookie: session=)"
            + QByteArray(static_cast<qsizetype>(below(400)), 's') + R"(\r\n)";
    }
    QByteArray responseHeaders()
    {
        const std::array types = {"video/mp4", "image/png", "text/html", "application/json"};
        return R"(Content-Type: )" + QByteArray(types.at(below(types.size())))
            + R"(\r\nContent-Length: )" + QByteArray::number(below(10'000'000))
            + R"(\r\nCache-Control: max-age=3600\r\nETag: \")"
            + QByteArray(static_cast<qsizetype>(below(300)), 'e') + R"(\"\r\n)";
    }

    QByteArray page()
    {
        return "https://www.example.org/page/" + QByteArray::number(below(pagesCount));
    }
    QByteArray newId() { return QByteArray::number(m_begun); }
    QByteArray oldId()
    {
        return QByteArray::number(m_begun - std::min<quint32>(m_begun - 1, below(500)));
    }
    quint32 below(size_t limit) { return static_cast<quint32>(m_random() % limit); }

    const QByteArray m_type;
    std::mt19937 m_random{seed};
    quint32 m_begun = 0;
};

void compareCost(const QString &host)
{
    ChildProcess child(host);
    struct Kind {
        Browser browser;
        qsizetype answer;
        std::vector<double> times;
    };
    const auto kind = [&child](const char *type) {
        Browser browser(type);
        child.write(browser.tasks(1));
        return Kind{Browser(type), child.takeAnswer(), {}};
    };
    std::array kinds = {kind(notificationType), kind(unknownType)};
    qsizetype bytes = 0;
    for (int round = -1; round < rounds; ++round) {
        for (Kind &one : kinds) {
            const QByteArray tasks = one.browser.tasks(tasksPerRound);
            bytes += tasks.size();
            QElapsedTimer timer;
            timer.start();
            child.exchange(tasks, one.answer * tasksPerRound);
            if (round >= 0) // the first one warms up
                one.times.push_back(microseconds(timer) / tasksPerRound);
        }
    }
    const double known = median(kinds[0].times);
    const double unknown = median(kinds[1].times);
    std::printf(
        "notification %.2f us, unknown type %.2f us, ratio %.2f  (aim: at most 1.5); medians "
        "of %d runs of %d tasks, %lld bytes each\n",
        known, unknown, known / unknown, rounds, tasksPerRound,
        bytes / (2LL * (rounds + 1) * tasksPerRound));
}

void watchMemory(const QString &host)
{
    ChildProcess child(host);
    Browser browser(notificationType);
    child.write(browser.tasks(1));
    const qsizetype answer = child.takeAnswer();
    std::printf("resident memory in KiB, from %ld, after each %d of %d notifications:",
                child.statusKibibytes("VmRSS"), tasksPerSample * samplesPerLine, manyTasks);
    for (int told = 0; told < manyTasks; told += tasksPerSample) {
        child.exchange(browser.tasks(tasksPerSample), answer * tasksPerSample);
        if ((told / tasksPerSample + 1) % samplesPerLine == 0)
            std::printf(" %ld", child.statusKibibytes("VmRSS"));
    }
    std::printf("; at its peak %ld\n", child.statusKibibytes("VmHWM"));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("TMPDIR", home.path().toLocal8Bit());
    const QString host = qEnvironmentVariable("KOVALO_HOST", QStringLiteral(KOVALO_HOST_PATH));
    compareCost(host);
    watchMemory(host);
}
