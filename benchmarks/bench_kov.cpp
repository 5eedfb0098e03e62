// The cost of a download in the service compared with curl in the same run: time, CPU time, memory;
// the gain from several connections to a server that limits the rate of each; and the time of the
// start.
//
//   bench_kov [MEBIBYTES]    the size of the large file (1024)

#include "statistics.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <netinet/in.h>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr long long mebibyte = 1LL << 20;
constexpr int rounds = 5;

void require(bool ok, const char *what)
{
    if (ok)
        return;
    std::perror(what);
    std::exit(1);
}

/// Answers one request: "GET /MEBIBYTES-RATE" for a file of zeros, with so many bytes per second
/// (0: no limit), starting at the position in a Range field.
void serve(int connection)
{
    static const std::vector<char> zeros(mebibyte);
    std::string head;
    std::array<char, 4096> piece = {};
    while (head.find("\r\n\r\n") == std::string::npos) {
        const ssize_t size = ::read(connection, piece.data(), piece.size());
        if (size <= 0)
            break;
        head.append(piece.data(), static_cast<size_t>(size));
    }
    long long size = 0;
    long long rate = 0;
    long long from = 0;
    long long last = 0;
    std::sscanf(head.c_str(), "GET /%lld-%lld", &size, &rate);
    size *= mebibyte;
    last = size - 1;
    const size_t range = head.find("Range: bytes=");
    if (range != std::string::npos)
        std::sscanf(head.c_str() + range, "Range: bytes=%lld-%lld", &from, &last);
    std::string answer =
        range == std::string::npos ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 206 Partial Content\r\n";
    answer += "Accept-Ranges: bytes\r\nETag: \"1\"\r\nConnection: close\r\nContent-Length: "
        + std::to_string(last - from + 1) + "\r\n";
    if (range != std::string::npos)
        answer += "Content-Range: bytes " + std::to_string(from) + "-" + std::to_string(last) + "/"
            + std::to_string(size) + "\r\n";
    answer += "\r\n";
    bool open = ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL) > 0;
    QElapsedTimer timer;
    timer.start();
    long long sent = 0;
    while (open && from + sent <= last) {
        const long long step =
            std::min({rate > 0 ? mebibyte / 16 : mebibyte, last + 1 - from - sent});
        const ssize_t written =
            ::send(connection, zeros.data(), static_cast<size_t>(step), MSG_NOSIGNAL);
        open = written > 0;
        sent += open ? written : 0;
        if (rate > 0 && sent * 1000 / rate > timer.elapsed())
            QThread::msleep(static_cast<unsigned long>(sent * 1000 / rate - timer.elapsed()));
    }
    ::close(connection);
}

/// A process of its own, so that its CPU time is separate. Returns the port.
int startServer()
{
    const int listening = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    require(::bind(listening, generic, size) == 0 && ::listen(listening, SOMAXCONN) == 0
                && ::getsockname(listening, generic, &size) == 0,
            "listen");
    if (::fork() == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;) {
            const int connection = ::accept(listening, nullptr, nullptr);
            if (connection >= 0)
                std::thread(serve, connection).detach();
        }
    }
    ::close(listening);
    return ntohs(address.sin_port);
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The service in a home of its own.
class Service {
public:
    explicit Service(const QString &program) : m_program(program)
    {
        const auto path = [this](const char *name) {
            return m_home.filePath(QString::fromLatin1(name));
        };
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"HOME", "TMPDIR", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"})
            environment.insert(QString::fromLatin1(variable), m_home.path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"), path("data"));
        environment.insert(QStringLiteral("KOVALO_LOG_LEVEL"), QStringLiteral("0"));
        m_environment = environment;
        QElapsedTimer timer;
        timer.start();
        m_process.setProcessEnvironment(environment);
        m_process.start(program, {QStringLiteral("-service")});
        const QString socket = path("kov6fs") + QString::number(::getuid());
        while (!QFile::exists(socket))
            QThread::usleep(200);
        startMicroseconds = microseconds(timer);
        kov({QStringLiteral("set"), QStringLiteral("DefaultDownloadPath"), folder()});
    }
    ~Service()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Service)

    void kov(const QStringList &words)
    {
        QProcess command;
        command.setProcessEnvironment(m_environment);
        command.start(m_program, words);
        require(command.waitForFinished() && command.exitCode() == 0, "kov");
    }
    /// Seconds from the request to the complete file, which is then removed.
    double download(const QString &url)
    {
        const QString file = folder() + url.mid(url.lastIndexOf(u'/'));
        QElapsedTimer timer;
        timer.start();
        kov({QStringLiteral("add"), url});
        while (!QFile::exists(file))
            QThread::msleep(1);
        const double seconds = microseconds(timer) / 1e6;
        QFile::remove(file);
        return seconds;
    }
    /// CPU time so far in seconds (proc(5): utime and stime are the 14th and 15th field).
    double computed() const
    {
        const QByteArray stat = readAll(QStringLiteral("/proc/%1/stat").arg(m_process.processId()));
        const QByteArrayList fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        return static_cast<double>(fields.at(11).toLongLong() + fields.at(12).toLongLong())
            / static_cast<double>(::sysconf(_SC_CLK_TCK));
    }
    /// The peak memory so far, in MiB.
    double peakMemory() const
    {
        const QByteArray status =
            readAll(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
        return status.mid(status.indexOf("VmHWM:") + 6, 12).trimmed().split(' ').at(0).toDouble()
            / 1024;
    }

    double startMicroseconds = 0;

private:
    QString folder() const { return m_home.filePath(QStringLiteral("files")); }

    const QTemporaryDir m_home;
    const QString m_program;
    QProcessEnvironment m_environment;
    QProcess m_process;
};

struct Cost {
    double seconds = 0;
    double computing = 0;
};

Cost curl(const QString &url)
{
    const QTemporaryDir folder;
    const auto computed = [] {
        rusage usage = {};
        ::getrusage(RUSAGE_CHILDREN, &usage);
        const auto seconds = [](const timeval &time) {
            return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
        };
        return seconds(usage.ru_utime) + seconds(usage.ru_stime);
    };
    const double before = computed();
    QElapsedTimer timer;
    timer.start();
    require(
        QProcess::execute(QStringLiteral("curl"),
                          {QStringLiteral("-sSo"), folder.filePath(QStringLiteral("file")), url})
            == 0,
        "curl");
    return {microseconds(timer) / 1e6, computed() - before};
}

} // namespace

int main(int argc, char *argv[])
{
    const int port = startServer();
    const QCoreApplication application(argc, argv);
    const QString program = QStringLiteral(KOV_PATH);
    const auto url = [port](long long size, long long rate) {
        return QStringLiteral("http://127.0.0.1:%1/%2-%3").arg(port).arg(size).arg(rate);
    };
    const long long size = argc > 1 ? std::atoll(argv[1]) : 1024;

    std::vector<double> starts;
    starts.reserve(static_cast<size_t>(2) * rounds);
    for (int round = 0; round < 2 * rounds; ++round)
        starts.push_back(Service(program).startMicroseconds);
    std::printf("start to listening %40.1f ms\n", median(starts) / 1000);

    const double gibibytes = static_cast<double>(size) / 1024;
    std::vector<double> ownTimes;
    std::vector<double> ownComputing;
    std::vector<double> curlTimes;
    std::vector<double> curlComputing;
    {
        Service service(program);
        service.kov({QStringLiteral("set"), QStringLiteral("MaxConnectionsPerServer"),
                     QStringLiteral("1")});
        for (int round = 0; round < rounds; ++round) {
            const double before = service.computed();
            ownTimes.push_back(service.download(url(size, 0)) / gibibytes);
            ownComputing.push_back((service.computed() - before) / gibibytes);
            const Cost cost = curl(url(size, 0));
            curlTimes.push_back(cost.seconds / gibibytes);
            curlComputing.push_back(cost.computing / gibibytes);
        }
    }
    const auto report = [](const char *what, const std::vector<double> &own,
                           const std::vector<double> &other) {
        std::printf("%-32s kov %6.2f s   curl %6.2f s   %5.2f times\n", what, median(own),
                    median(other), median(own) / median(other));
    };
    report("time for 1 GiB", ownTimes, curlTimes);
    report("computing for 1 GiB", ownComputing, curlComputing);

    for (const long long each : {1LL, size}) {
        Service service(program);
        service.download(url(each, 0));
        std::printf("peak memory, %6lld MiB %35.1f MiB\n", each, service.peakMemory());
    }

    constexpr long long limited = 48;
    for (const int connections : {1, 2, 4, 8}) {
        Service service(program);
        service.kov({QStringLiteral("set"), QStringLiteral("MaxConnectionsPerServer"),
                     QString::number(connections)});
        std::printf("%lld MiB at 2 MiB/s a connection, up to %d %16.1f s\n", limited, connections,
                    service.download(url(limited, 2 * mebibyte)));
    }
    return 0;
}
