// Ctrl-C on a terminal stops the command that runs, not the console: the signal only raises a
// flag, which long work looks at between its slices.
#pragma once

namespace console {

// Catches SIGINT from now on (the console does so on a terminal only).
void install_interrupt_handler();
// What Ctrl-C does; safe in a signal handler.
void request_interrupt() noexcept;
// True once after a request, which it clears.
bool take_interrupt() noexcept;

}  // namespace console
