// The component's help pages (the HTML its help file is compiled from, installed beside it) in a
// window of their own.
#pragma once

#include <QString>
#include <QTextBrowser>

namespace window {

// The folder of the help pages for the module at `module_path`: "help" beside it.
QString help_folder(const QString& module_path);

class HelpWindow : public QTextBrowser {
    Q_OBJECT
  public:
    // False when the folder holds no index.html: the caller tells the user.
    static bool available(const QString& folder);
    explicit HelpWindow(const QString& folder, QWidget* parent = nullptr);
};

}  // namespace window
