#include "Platform/Desktop/TerminationSignals.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tamsy {
namespace {

constexpr int caught[] = {SIGTERM, SIGINT, SIGHUP};

/// The eventfd that the handler writes to; -1 if there is none.
std::atomic<int> eventNumber = -1;
static_assert(std::atomic<int>::is_always_lock_free);

/// A signal handler: only async-signal-safe calls.
void wake(int /*signal*/) {
    const int error = errno;
    const std::uint64_t one = 1;
    (void)!::write(eventNumber.load(), &one, sizeof one);
    errno = error;
}

bool isIgnored(int signal) {
    struct sigaction current {};
    return ::sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN; // NOLINT
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent), event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!event_.isOpen())
        return;
    eventNumber = event_.number();
    auto* notifier = new QSocketNotifier(event_.number(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::uint64_t count = 0;
        if (::read(event_.number(), &count, sizeof count) == sizeof count)
            Q_EMIT received();
    });
    struct sigaction action {};
    action.sa_handler = wake; // NOLINT(cppcoreguidelines-pro-type-union-access): the system's
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : caught) {
        if (signal != SIGHUP || !isIgnored(signal))
            ::sigaction(signal, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (!event_.isOpen())
        return;
    for (const int signal : caught) {
        if (!isIgnored(signal))
            (void)std::signal(signal, SIG_DFL);
    }
    eventNumber = -1;
}

} // namespace tamsy
