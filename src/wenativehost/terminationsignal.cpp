#include "terminationsignal.h"

#include <QSocketNotifier>

#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>

namespace {

/// By this the handler wakes the event loop; it may call only a few functions (signal-safety(7)).
int wakeUp = -1;

void onSignal(int)
{
    // SIGALRM ends the process.
    ::alarm(TerminationSignal::graceSeconds);
    const std::uint64_t one = 1;
    (void)!::write(wakeUp, &one, sizeof one);
}

} // namespace

TerminationSignal::TerminationSignal(QObject *parent) : QObject(parent)
{
    setObjectName(QStringLiteral("SIGTERM")); // the reason that the log gives
    wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp < 0)
        return;
    auto *const notifier = new QSocketNotifier(wakeUp, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        Q_EMIT received();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    ::sigaction(SIGTERM, &action, nullptr);
}

TerminationSignal::~TerminationSignal()
{
    std::signal(SIGTERM, SIG_DFL);
    if (wakeUp >= 0)
        ::close(wakeUp);
}
