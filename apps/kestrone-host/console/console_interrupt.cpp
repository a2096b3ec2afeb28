#include "console_interrupt.h"

#include <signal.h>

#include <atomic>

namespace console {

namespace {
std::atomic<bool> g_interrupted{false};
std::atomic<bool> g_busy{false};
std::atomic<bool> g_only_while_busy{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set from a signal handler");

extern "C" void on_interrupt(int signal) {
    if (g_only_while_busy.load() && !g_busy.load()) {
        ::signal(signal, SIG_DFL);
        ::raise(signal);
        return;
    }
    request_interrupt();
}
}  // namespace

void set_busy(bool busy) noexcept {
    g_busy.store(busy);
}

void install_interrupt_handler(bool only_while_busy) {
    g_only_while_busy.store(only_while_busy);
    struct sigaction action {};
    action.sa_handler = &on_interrupt;
    sigemptyset(&action.sa_mask);
    // Reads go on after a Ctrl-C at the prompt: it stops work, not the console.
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
}

void request_interrupt() noexcept {
    g_interrupted.store(true);
}

bool take_interrupt() noexcept {
    return g_interrupted.exchange(false);
}

}  // namespace console
