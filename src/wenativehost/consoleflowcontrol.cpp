#include "consoleflowcontrol.h"

#include "enddeadline.h"

#include <QMetaObject>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace {

/// The memory that a message takes besides its text: its event, and the overhead of allocations.
constexpr qint64 messageOverhead = 256;
/// After so many posted bytes the reader posts a query for the handling thread's progress.
constexpr qint64 announcedAtOnce = ConsoleFlowControl::maxUnhandledBytes / 16;
/// The interval in milliseconds at which the reader polls for room if the process has no descriptor
/// left for waiting.
constexpr int roomPollMs = 20;

} // namespace

ConsoleFlowControl::ConsoleFlowControl(QObject *parent)
    : QObject(parent), m_roomEvent(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

ConsoleFlowControl::~ConsoleFlowControl()
{
    if (m_roomEvent >= 0)
        ::close(m_roomEvent);
}

void ConsoleFlowControl::posted(qsizetype bytes)
{
    m_unhandledBytes += messageOverhead + bytes;
    m_unannouncedBytes += messageOverhead + bytes;
    if (m_unannouncedBytes < announcedAtOnce)
        return;
    // Events of one thread are delivered in order: when this one comes, the messages before it
    // have been handled.
    QMetaObject::invokeMethod(
        this, [this, all = std::exchange(m_unannouncedBytes, 0)] { handled(all); },
        Qt::QueuedConnection);
}

void ConsoleFlowControl::setInputEnded()
{
    m_inputEnded = true;
    EndDeadline::begin();
}

void ConsoleFlowControl::handled(qint64 bytes)
{
    m_unhandledBytes -= bytes;
    if (m_waiting && m_roomEvent >= 0 && m_unhandledBytes <= maxUnhandledBytes)
        ::eventfd_write(m_roomEvent, 1);
}

// The reader thread may be terminated in here. Its stack is unwound without leaving this frame, so
// the address sanitizer's redzones around the variables would stay poisoned.
[[gnu::no_sanitize_address]] void ConsoleFlowControl::waitForRoom(int inputDescriptor)
{
    if (m_unhandledBytes <= maxUnhandledBytes)
        return;
    m_waiting = true;
    std::array<pollfd, 2> watched = {
        {{m_roomEvent, POLLIN, 0}, {m_inputEnded ? -1 : inputDescriptor, POLLRDHUP, 0}}};
    const int timeout = m_roomEvent >= 0 ? -1 : roomPollMs;
    while (m_unhandledBytes > maxUnhandledBytes) {
        if (::poll(watched.data(), watched.size(), timeout) < 0)
            continue;
        if (watched[0].revents != 0) {
            eventfd_t count = 0;
            ::eventfd_read(m_roomEvent, &count);
        }
        if (watched[1].revents != 0) {
            setInputEnded();
            watched[1].fd = -1;
        }
    }
    m_waiting = false;
}
