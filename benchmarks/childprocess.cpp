#include "childprocess.h"

#include "statistics.h"

#include <QByteArrayList>
#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <vector>

namespace {

void require(bool ok, const char *what)
{
    if (ok)
        return;
    std::fprintf(stderr, "%s: %s\n", what, std::strerror(errno));
    std::exit(1);
}

} // namespace

ChildProcess::ChildProcess(const QString &program, const QStringList &arguments)
{
    std::array<int, 2> in = {};
    std::array<int, 2> out = {};
    require(::pipe2(in.data(), O_CLOEXEC) == 0 && ::pipe2(out.data(), O_CLOEXEC) == 0, "pipe");
    posix_spawn_file_actions_t actions = {};
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    QByteArrayList words = {QFile::encodeName(program)};
    for (const QString &argument : arguments)
        words += argument.toLocal8Bit();
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    errno = ::posix_spawn(&m_pid, argv.front(), &actions, nullptr, argv.data(), environ);
    require(errno == 0, argv.front());
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(in[0]);
    ::close(out[1]);
    m_input = in[1];
    m_output = out[0];
}

ChildProcess::~ChildProcess()
{
    if (m_pid > 0)
        finish();
}

void ChildProcess::write(const QByteArray &bytes)
{
    require(::write(m_input, bytes.constData(), static_cast<size_t>(bytes.size()))
                == static_cast<ssize_t>(bytes.size()),
            "write");
}

QByteArray ChildProcess::read(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    qsizetype got = 0;
    while (got < size) {
        const ssize_t count = ::read(m_output, bytes.data() + got, static_cast<size_t>(size - got));
        require(count > 0, "read");
        got += count;
    }
    return bytes;
}

qsizetype ChildProcess::takeAnswer()
{
    const QByteArray prefix = read(sizeof(quint32));
    const auto length = qFromLittleEndian<quint32>(prefix.constData());
    read(length);
    return prefix.size() + static_cast<qsizetype>(length);
}

double ChildProcess::roundTrip(const QByteArray &message)
{
    QElapsedTimer timer;
    timer.start();
    write(message);
    takeAnswer();
    return microseconds(timer);
}

void ChildProcess::exchange(const QByteArray &bytes, qsizetype answerSize)
{
    require(::fcntl(m_input, F_SETFL, O_NONBLOCK) == 0, "fcntl");
    std::array<char, 65536> answers{};
    qsizetype written = 0;
    qsizetype got = 0;
    while (got < answerSize) {
        std::array<pollfd, 2> ends = {pollfd{m_output, POLLIN, 0}, pollfd{m_input, POLLOUT, 0}};
        require(::poll(ends.data(), written < bytes.size() ? 2 : 1, -1) > 0, "poll");
        if (ends[0].revents != 0) {
            const ssize_t count = ::read(m_output, answers.data(), answers.size());
            require(count > 0, "read");
            got += count;
        }
        if (ends[1].revents != 0) {
            const ssize_t count = ::write(m_input, bytes.constData() + written,
                                          static_cast<size_t>(bytes.size() - written));
            require(count >= 0 || errno == EAGAIN, "write");
            written += std::max<ssize_t>(count, 0);
        }
    }
    require(::fcntl(m_input, F_SETFL, 0) == 0, "fcntl");
}

bool ChildProcess::finish()
{
    ::close(m_input);
    int status = 0;
    require(::waitpid(m_pid, &status, 0) == m_pid, "wait");
    ::close(m_output);
    m_pid = -1;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

double ChildProcess::computingTime() const
{
    clockid_t clock = {};
    timespec time = {};
    require(::clock_getcpuclockid(m_pid, &clock) == 0 && ::clock_gettime(clock, &time) == 0,
            "clock");
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

long ChildProcess::statusKibibytes(const QByteArray &name) const
{
    QFile status(QStringLiteral("/proc/%1/status").arg(m_pid));
    require(status.open(QIODevice::ReadOnly), "status");
    const QByteArrayList lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').constFirst().toLong();
    }
    require(false, name.constData());
    return 0;
}
