#include "appkit/Signals.h"

#include <QSocketNotifier>

#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <utility>

namespace {

constexpr std::array terminating { SIGTERM, SIGINT, SIGHUP };

/// Counts the signals that came.
volatile std::sig_atomic_t counter = -1;

void count(int)
{
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(counter, &one, sizeof one);
    errno = before;
}

void handle(int signal, void (*handler)(int), int flags)
{
    struct sigaction action { };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | flags;
    ::sigaction(signal, &action, nullptr);
}

bool isSwitchedOff(int signal)
{
    struct sigaction action { };
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}

/// A handler goes when another program is executed; a signal that is ignored would stay ignored.
void outliveBrokenPipes()
{
    handle(
        SIGPIPE, [](int) {}, 0);
}

class TerminationSignals::Listener final : public QSocketNotifier {
public:
    explicit Listener(std::function<void()> onSignal)
        : QSocketNotifier(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), QSocketNotifier::Read)
    {
        connect(this, &QSocketNotifier::activated, this, [this, onSignal = std::move(onSignal)] {
            setEnabled(false);
            onSignal();
        });
        counter = static_cast<int>(socket());
        for (const int signal : terminating) {
            if (!isSwitchedOff(signal))
                handle(signal, count, static_cast<int>(SA_RESETHAND));
        }
    }

    ~Listener() override
    {
        for (const int signal : terminating) {
            if (!isSwitchedOff(signal))
                handle(signal, SIG_DFL, 0);
        }
        ::close(static_cast<int>(socket()));
    }
};

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : listener_(std::make_unique<Listener>(std::move(onSignal)))
{
}

TerminationSignals::~TerminationSignals() = default;
