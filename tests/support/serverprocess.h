#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <optional>

/**
 * A server in a process of its own: listens on a local socket, says the same to every client and
 * does nothing more until it is killed.
 */
class ServerProcess {
public:
    enum class Then { KeepsQuiet, StopsWriting, StopsReading };

    struct Options {
        QByteArray path;
        QByteArray greeting;
        Then then = Then::KeepsQuiet;
        /// Needs root.
        std::optional<uid_t> user = std::nullopt;
    };

    explicit ServerProcess(const Options &options)
    {
        int ready[2];
        if (::pipe2(ready, O_CLOEXEC) != 0)
            return;
        const int listener = bind(options.path);
        m_pid = ::fork();
        if (m_pid == 0)
            serve(listener, ready[1], options);
        ::close(listener);
        ::close(ready[1]);
        char byte = 0;
        m_listening = ::read(ready[0], &byte, 1) == 1;
        ::close(ready[0]);
    }
    ~ServerProcess() { kill(); }
    Q_DISABLE_COPY_MOVE(ServerProcess)

    bool isListening() const { return m_listening; }
    void kill()
    {
        if (m_pid <= 0)
            return;
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
        m_pid = -1;
    }

private:
    static int bind(const QByteArray &path)
    {
        ::unlink(path.constData());
        const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.constData(), sizeof(address.sun_path) - 1);
        (void)::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof(address));
        return listener;
    }

    [[noreturn]] static void serve(int listener, int ready, const Options &options)
    {
        const bool isUser = !options.user || ::setuid(*options.user) == 0;
        if (!isUser || ::listen(listener, 5) != 0 || ::write(ready, "r", 1) != 1)
            ::_exit(1);
        for (;;) {
            const int client = ::accept(listener, nullptr, nullptr);
            const auto size = static_cast<size_t>(options.greeting.size());
            if (::write(client, options.greeting.constData(), size) < 0)
                ::_exit(1);
            if (options.then == Then::StopsWriting)
                ::shutdown(client, SHUT_WR);
            else if (options.then == Then::StopsReading)
                ::shutdown(client, SHUT_RD);
        }
    }

    pid_t m_pid = -1;
    bool m_listening = false;
};
