// kestrone-host window [--play FILE] [--project FILE] [--world FILE] [--run FILE] [--zoom N]
//                      [--snapshot PNG] [--shot PNG] [--quit-after-play]
#pragma once

#include "main_window.h"

namespace window {

// Runs the window until it is closed (or the script has played, with quit_after_play). Needs a
// QApplication. The exit status: 0, or 1 when the script had a failing line or the snapshot could
// not be written, 2 when the component could not be loaded.
int run_window(const WindowOptions& options);

}  // namespace window
