#include "window_command.h"

#include <QApplication>
#include <QThreadPool>

namespace window {

int run_window(const WindowOptions& options) {
    MainWindow window(options);
    window.show();
    if (!window.start()) {
        // Told already; with a script to play there is nobody to close the window.
        if (options.quit_after_play) return 2;
    }
    const int status = QApplication::exec();
    const int shown = status != 0 ? status : window.exit_status();
    // The checks and the hex ran on the pool's threads: they end here, not in the exit's
    // teardown, where a thread that is still going leaves its memory behind.
    QThreadPool::globalInstance()->waitForDone();
    return shown;
}

}  // namespace window
