#include "window_command.h"

#include <QApplication>

namespace window {

int run_window(const WindowOptions& options) {
    MainWindow window(options);
    window.show();
    if (!window.start()) {
        // Told already; with a script to play there is nobody to close the window.
        if (options.quit_after_play) return 2;
    }
    const int status = QApplication::exec();
    return status != 0 ? status : window.exit_status();
}

}  // namespace window
