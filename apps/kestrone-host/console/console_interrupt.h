// Ctrl-C stops the command that runs, not the console: the signal only raises a flag, which long
// work looks at between its slices. On a terminal the prompt then comes back; with piped input an
// interrupt while no command runs ends the console, as it always did.
#pragma once

namespace console {

// Catches SIGINT from now on. `only_while_busy`: outside a command it ends the program.
void install_interrupt_handler(bool only_while_busy = false);
// A command runs (true) or the console waits for the next line (false).
void set_busy(bool busy) noexcept;
// What Ctrl-C does; safe in a signal handler.
void request_interrupt() noexcept;
// True once after a request, which it clears.
bool take_interrupt() noexcept;

}  // namespace console
