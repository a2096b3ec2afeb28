#include "arena_editor.h"

#include <QActionGroup>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QToolBar>
#include <QVBoxLayout>
#include <fstream>

#include "arena_writer.h"

namespace world {

namespace {

// One edit as the undo stack holds it: the document before and after.
class DocumentEdit : public QUndoCommand {
  public:
    using Show = std::function<void(const ArenaDocument&)>;
    DocumentEdit(ArenaDocument before, ArenaDocument after, const QString& what, Show show)
        : QUndoCommand(what),
          before_(std::move(before)),
          after_(std::move(after)),
          show_(std::move(show)) {}
    void redo() override { show_(after_); }
    void undo() override { show_(before_); }

  private:
    ArenaDocument before_, after_;
    Show show_;
};

struct ToolEntry {
    Tool tool;
    const char* text;
    const char* tip;
};
const ToolEntry kTools[] = {
    {Tool::Select, "Select", "Select an item and drag it; Delete deletes it"},
    {Tool::Line, "Line",
     "A click a point; a double click, Return or the right button ends the line"},
    {Tool::Wall, "Wall", "Press at one end and let go at the other"},
    {Tool::Light, "Light", "A click places a light of the intensity below"},
    {Tool::Zone, "Zone", "Press at one corner and let go at the other"},
    {Tool::Start, "Start", "Press where the robot starts and drag the way it faces"},
};

}  // namespace

ArenaEditor::ArenaEditor(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    banner_ = new QLabel(this);
    banner_->setStyleSheet("background: #ffe680; color: black; padding: 3px;");
    banner_->setWordWrap(true);
    layout->addWidget(banner_);
    auto* tools = new QWidget(this);
    build_tools(tools);
    layout->addWidget(tools);
    auto* values = new QWidget(this);
    build_values(values);
    layout->addWidget(values);
    canvas_ = new ArenaCanvas(
        document_, [this](ArenaDocument after, const QString& what) { return edit(after, what); },
        this);
    layout->addWidget(canvas_, 1);
    message_ = new QLabel(this);
    message_->setStyleSheet("color: #a00000;");
    message_->setWordWrap(true);
    layout->addWidget(message_);
    connect(canvas_, &ArenaCanvas::selectionChanged, this, &ArenaEditor::follow_selection);
    connect(&undo_, &QUndoStack::cleanChanged, this, [this] {
        update_banner();
        emit changed();
    });
    follow_pen();
    update_banner();
}

void ArenaEditor::build_tools(QWidget* row) {
    auto* bar = new QToolBar(row);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar, 1);
    tools_ = new QActionGroup(this);
    for (const ToolEntry& t : kTools) {
        QAction* a = bar->addAction(tr(t.text));
        a->setToolTip(tr(t.tip));
        a->setCheckable(true);
        a->setChecked(t.tool == Tool::Select);
        a->setData(static_cast<int>(t.tool));
        tools_->addAction(a);
    }
    connect(tools_, &QActionGroup::triggered, this, [this] { follow_pen(); });
    bar->addSeparator();
    QAction* undo = undo_.createUndoAction(this, tr("Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = undo_.createRedoAction(this, tr("Redo"));
    redo->setShortcut(QKeySequence::Redo);
    bar->addAction(undo);
    bar->addAction(redo);
    bar->addAction(tr("Delete"), this, [this] { canvas_->delete_selected(); });
    auto* done = new QPushButton(tr("Close editor"), row);
    connect(done, &QPushButton::clicked, this, &ArenaEditor::closeRequested);
    layout->addWidget(done);
}

void ArenaEditor::build_values(QWidget* row) {
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(4, 0, 4, 0);
    snap_ = new QCheckBox(tr("Grid"), row);
    snap_->setChecked(true);
    grid_ = new QSpinBox(row);
    grid_->setRange(5, 1000);
    grid_->setSingleStep(5);
    grid_->setValue(50);
    grid_->setSuffix(tr(" mm"));
    width_ = new QDoubleSpinBox(row);
    width_->setRange(1, 500);
    width_->setDecimals(0);
    width_->setValue(20);
    width_->setPrefix(tr("width "));
    intensity_ = new QDoubleSpinBox(row);
    intensity_->setRange(0, 1);
    intensity_->setSingleStep(0.1);
    intensity_->setValue(1);
    intensity_->setPrefix(tr("intensity "));
    name_ = new QLineEdit(row);
    name_->setPlaceholderText(tr("zone name"));
    for (QWidget* w : std::initializer_list<QWidget*>{snap_, grid_, width_, intensity_, name_})
        layout->addWidget(w);
    connect(snap_, &QCheckBox::toggled, this, &ArenaEditor::follow_pen);
    connect(grid_, &QSpinBox::valueChanged, this, &ArenaEditor::follow_pen);
    connect(width_, &QDoubleSpinBox::valueChanged, this, [this](double w) {
        follow_pen();
        change_selected(tr("Change the width"), [w](Shape& s) {
            if (auto* l = std::get_if<Line>(&s)) l->width = w;
        });
    });
    connect(intensity_, &QDoubleSpinBox::valueChanged, this, [this](double i) {
        follow_pen();
        change_selected(tr("Change the intensity"), [i](Shape& s) {
            if (auto* l = std::get_if<Light>(&s)) l->intensity = i;
        });
    });
    connect(name_, &QLineEdit::editingFinished, this, [this] {
        const std::string name = name_->text().trimmed().toStdString();
        change_selected(tr("Rename the zone"), [name](Shape& s) {
            if (auto* z = std::get_if<Zone>(&s)) z->name = name;
        });
    });
}

void ArenaEditor::follow_pen() {
    const QAction* tool = tools_->checkedAction();
    canvas_->set_pen({tool ? static_cast<Tool>(tool->data().toInt()) : Tool::Select,
                      snap_->isChecked() ? grid_->value() : 0.0, width_->value(),
                      intensity_->value()});
}

void ArenaEditor::set_tool(Tool tool) {
    for (QAction* a : tools_->actions())
        if (a->data().toInt() == static_cast<int>(tool)) a->setChecked(true);
    follow_pen();
}

void ArenaEditor::set_grid(double grid) {
    snap_->setChecked(grid > 0);
    if (grid > 0) grid_->setValue(static_cast<int>(grid));
    follow_pen();
}

// The values of the selected item stand in the boxes that change them.
void ArenaEditor::follow_selection() {
    const auto index = canvas_->selected();
    const Shape* shape = index ? &document_.items()[*index].shape : nullptr;
    const QSignalBlocker b1(width_), b2(intensity_), b3(name_);
    if (const auto* l = shape ? std::get_if<Line>(shape) : nullptr) width_->setValue(l->width);
    if (const auto* l = shape ? std::get_if<Light>(shape) : nullptr)
        intensity_->setValue(l->intensity);
    const auto* z = shape ? std::get_if<Zone>(shape) : nullptr;
    name_->setText(z ? QString::fromStdString(z->name) : QString());
    name_->setEnabled(z != nullptr);
    follow_pen();
}

void ArenaEditor::change_selected(const QString& what, const std::function<void(Shape&)>& change) {
    const auto index = canvas_->selected();
    if (!index) return;
    Shape shape = document_.items()[*index].shape;
    const std::string before = item_text(shape);
    change(shape);
    if (item_text(shape) == before) return;
    ArenaDocument after = document_;
    after.replace(*index, std::move(shape));
    if (!edit(std::move(after), what)) follow_selection();
}

bool ArenaEditor::edit(ArenaDocument after, const QString& what) {
    const std::string problem = arena_problem(after);
    if (!problem.empty()) {
        message_->setText(tr("Not done (%1): the file would be refused at line %2")
                              .arg(what, QString::fromStdString(problem)));
        return false;
    }
    message_->clear();
    undo_.push(new DocumentEdit(document_, std::move(after), what,
                                [this](const ArenaDocument& d) { show_document(d); }));
    return true;
}

QString ArenaEditor::message() const {
    return message_->text();
}

void ArenaEditor::show_document(const ArenaDocument& document) {
    document_ = document;
    canvas_->document_changed();
    emit changed();
}

void ArenaEditor::set_document(ArenaDocument document, std::string path) {
    canvas_->cancel();
    undo_.clear();
    path_ = std::move(path);
    canvas_->select(std::nullopt);
    show_document(document);
    message_->clear();
    update_banner();
}

bool ArenaEditor::save_to(const std::string& path, std::string* error) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << write_arena(document_);
    out.close();
    if (!out) {
        if (error) *error = "cannot write " + path;
        return false;
    }
    path_ = path;
    undo_.setClean();
    update_banner();
    emit changed();
    return true;
}

void ArenaEditor::update_banner() {
    const QString name =
        path_.empty() ? tr("a new arena") : QFileInfo(QString::fromStdString(path_)).fileName();
    banner_->setText(tr("Editing arena: %1%2 - the robot runs again when the editor is closed")
                         .arg(name, modified() ? tr(" (not saved)") : QString()));
}

}  // namespace world
