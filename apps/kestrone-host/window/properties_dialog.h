// The property frame around the component's page: the page's widgets at their places and in their
// tab order, with OK, Cancel and Apply. The page's logic stays in the component; every edit is the
// `page` command it amounts to, run and recorded by the action runner.
#pragma once

#include <QDialog>
#include <QPushButton>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "action_runner.h"
#include "component_session.h"

namespace window {

class PropertiesDialog : public QDialog {
    Q_OBJECT
  public:
    // The page must be open in the stage's session. `report` shows a failed apply to the user;
    // `zoom` is the panel's, which the dialog takes with it.
    PropertiesDialog(ActionRunner& runner, std::function<void(const std::string&)> report,
                     int zoom = 1, QWidget* parent = nullptr);

    // The buttons, as the user presses them. apply() false when the page's write failed.
    bool apply();
    void ok();
    void cancel();
    // The widget made for the page's widget NAME, or null.
    QWidget* widget(const std::string& name) const;
    QPushButton* apply_button() const { return apply_; }

  signals:
    // An apply ran: the object's settings and the project's state may have changed.
    void applied();

  protected:
    void reject() override;

  private:
    void build();
    QWidget* make(const kestrone::WidgetInfo& info, QWidget* parent);
    void connect_edits(const kestrone::WidgetInfo& info, QWidget* made);
    void edit(const std::string& name, const std::string& property, const kestrone::Variant& value);
    void click(const std::string& name);
    // Shows what the page holds now, for the widgets that changed.
    void sync();

    ActionRunner& runner_;
    host::ComponentSession& session_;
    std::function<void(const std::string&)> report_;
    std::vector<QWidget*> widgets_;  // by the page's widget index
    std::map<std::string, QWidget*> by_name_;
    std::uint64_t revision_ = 0;
    QPushButton* apply_ = nullptr;
    bool closed_ = false;
    int zoom_ = 1;
};

}  // namespace window
