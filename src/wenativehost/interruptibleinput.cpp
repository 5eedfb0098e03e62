#include "interruptibleinput.h"

#include "assertionlog.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>

namespace {

constexpr qsizetype bufferSize = qsizetype{64} * 1024;

/// read(2), in which alone a thread that cannot be called off otherwise may be cut off: it holds no
/// lock there that anyone else would wait for.
ssize_t readTerminably(int fd, char *buffer, size_t size)
{
    int state = 0;
    ::pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &state);
    const ssize_t count = ::read(fd, buffer, size);
    ::pthread_setcancelstate(state, nullptr);
    return count;
}

} // namespace

InterruptibleInput::InterruptibleInput(int fd)
    : m_fd(fd), m_interrupted(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_buffer(bufferSize, Qt::Uninitialized)
{
    cookie_io_functions_t functions = {};
    functions.read = [](void *self, char *buffer, size_t size) {
        return static_cast<InterruptibleInput *>(self)->read(buffer, size);
    };
    m_file = ::fopencookie(this, "r", functions);
    if (checkOrLog(m_file && m_interrupted >= 0, "input can be read"))
        std::setvbuf(m_file, m_buffer.data(), _IOFBF, static_cast<size_t>(m_buffer.size()));
}

InterruptibleInput::~InterruptibleInput()
{
    if (m_file)
        std::fclose(m_file);
    if (m_interrupted >= 0)
        ::close(m_interrupted);
}

void InterruptibleInput::interrupt() const
{
    const std::uint64_t one = 1;
    checkOrLog(::write(m_interrupted, &one, sizeof one) == sizeof one, "input is interrupted");
}

ssize_t InterruptibleInput::read(char *buffer, size_t size) const
{
    for (;;) {
        if (!waitForInput())
            return 0;
        const ssize_t count = readTerminably(m_fd, buffer, size);
        // Between the wait and the read, someone else who shares the descriptor may have read.
        if (count >= 0 || (errno != EINTR && errno != EAGAIN))
            return count;
    }
}

bool InterruptibleInput::waitForInput() const
{
    std::array<pollfd, 2> ends = {pollfd{m_fd, POLLIN, 0}, pollfd{m_interrupted, POLLIN, 0}};
    int ready = -1;
    do {
        ready = ::poll(ends.data(), ends.size(), -1);
    } while (ready < 0 && errno == EINTR);
    return ready > 0 && ends[1].revents == 0;
}
