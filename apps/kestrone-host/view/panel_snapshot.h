// The panel as a PNG file, rendered by the view's own painting: for the console's `snapshot`,
// which runs without a display.
#pragma once

#include <memory>
#include <string>

#include "kestrone/panel.h"

class QGuiApplication;

namespace panelqt {

class PanelSnapshots {
  public:
    PanelSnapshots();
    ~PanelSnapshots();
    PanelSnapshots(const PanelSnapshots&) = delete;
    PanelSnapshots& operator=(const PanelSnapshots&) = delete;

    // Writes the panel at a zoom of 1 to `path`: "" when written, else why not. Makes a GUI
    // application on the offscreen platform the first time, when the program has none.
    std::string write(kestrone::IKestronePanel& panel, const std::string& path);

  private:
    std::unique_ptr<QGuiApplication> app_;
};

}  // namespace panelqt
