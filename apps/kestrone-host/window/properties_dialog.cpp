#include "properties_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "dialogue_font.h"
#include "error_text.h"
#include "store_commands.h"
#include "value_syntax.h"

namespace window {

using kestrone::Variant;
using kestrone::WidgetInfo;
using kestrone::WidgetKind;

namespace {

Qt::Alignment alignment_of(kestrone::WidgetAlignment a) {
    switch (a) {
        case kestrone::WidgetAlignment::Right:
            return Qt::AlignRight | Qt::AlignVCenter;
        case kestrone::WidgetAlignment::Center:
            return Qt::AlignHCenter | Qt::AlignVCenter;
        case kestrone::WidgetAlignment::Left:
            break;
    }
    return Qt::AlignLeft | Qt::AlignVCenter;
}

QString text_of(const std::string& s) {
    return QString::fromStdString(s);
}

// Shows the page's values in a widget, without raising the widget's own signals.
void show_values(QWidget* w, const WidgetInfo& info) {
    const QSignalBlocker quiet(w);
    w->setEnabled(info.enabled);
    if (auto* box = qobject_cast<QGroupBox*>(w)) box->setTitle(text_of(info.caption));
    if (auto* label = qobject_cast<QLabel*>(w)) label->setText(text_of(info.caption));
    if (auto* line = qobject_cast<QLineEdit*>(w)) {
        if (line->text() != text_of(info.text)) line->setText(text_of(info.text));
    }
    if (auto* option = qobject_cast<QRadioButton*>(w)) {
        option->setText(text_of(info.caption));
        option->setChecked(info.value != 0);
    }
    if (auto* check = qobject_cast<QCheckBox*>(w)) {
        check->setText(text_of(info.caption));
        check->setCheckState(info.value == 1   ? Qt::Checked
                             : info.value == 2 ? Qt::PartiallyChecked
                                               : Qt::Unchecked);
    }
    if (auto* slider = qobject_cast<QSlider*>(w)) {
        slider->setRange(info.min, info.max);
        slider->setSingleStep(info.small_change);
        slider->setPageStep(info.large_change);
        slider->setTickInterval(info.tick_frequency);
        slider->setValue(info.value);
    }
}

}  // namespace

PropertiesDialog::PropertiesDialog(ActionRunner& runner,
                                   std::function<void(const std::string&)> report, QWidget* parent,
                                   int zoom)
    : QDialog(parent),
      runner_(runner),
      session_(runner.context().stage.session()),
      report_(std::move(report)),
      zoom_(std::clamp(zoom, 1, 3)) {
    // The page's boxes are sized for the panel's font: in another, captions are cut.
    QFont font = panelqt::dialogue_font();
    font.setPixelSize(font.pixelSize() * zoom_);
    setFont(font);
    build();
}

void PropertiesDialog::build() {
    kestrone::IKestronePropertyPage* page = session_.page();
    std::string caption;
    float width = 0, height = 0;
    std::int32_t count = 0;
    if (page) {
        page->GetCaption(&caption);
        page->GetSize(&width, &height);
        page->GetWidgetCount(&count);
        page->GetRevision(&revision_);
    }
    setWindowTitle(text_of(caption));
    auto* area = new QWidget(this);
    area->setFixedSize(static_cast<int>(width) * zoom_, static_cast<int>(height) * zoom_);
    std::vector<std::pair<std::int16_t, QWidget*>> order;
    for (std::int32_t i = 0; i < count; ++i) {
        WidgetInfo info;
        if (page->GetWidget(i, &info) != kestrone::S_OK) continue;
        const bool inside = info.container >= 0 && info.container < i;
        QWidget* made =
            make(info, inside ? widgets_[static_cast<std::size_t>(info.container)] : area);
        widgets_.push_back(made);
        by_name_[info.name] = made;
        index_of_[made] = i;
        if (made->focusPolicy() != Qt::NoFocus) order.emplace_back(info.tab_index, made);
        connect_edits(info, made);
    }
    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this);
    apply_ = buttons->button(QDialogButtonBox::Apply);
    connect(buttons->button(QDialogButtonBox::Ok), &QPushButton::clicked, this, [this] { ok(); });
    connect(buttons->button(QDialogButtonBox::Cancel), &QPushButton::clicked, this,
            [this] { cancel(); });
    connect(apply_, &QPushButton::clicked, this, [this] { apply(); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(area);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    // Last, once every widget is made: a widget made later would take its own place in the walk.
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < order.size(); ++i) {
        tab_order_.push_back(order[i].second);
        if (i > 0) QWidget::setTabOrder(order[i - 1].second, order[i].second);
    }
    settle_option_stops();

    apply_->setEnabled(session_.page_changed());
}

QWidget* PropertiesDialog::make(const WidgetInfo& info, QWidget* parent) {
    QWidget* w = nullptr;
    switch (info.kind) {
        case WidgetKind::Frame:
            w = new QGroupBox(parent);
            break;
        case WidgetKind::Label: {
            auto* label = new QLabel(parent);
            label->setAlignment(alignment_of(info.alignment));
            w = label;
            break;
        }
        case WidgetKind::TextBox:
            w = new QLineEdit(parent);
            // The page sets no limit; a line edit's own is 32,767.
            static_cast<QLineEdit*>(w)->setMaxLength(std::numeric_limits<int>::max());
            break;
        case WidgetKind::OptionButton:
            // Each option button is its own: the page decides which one is on.
            w = new QRadioButton(parent);
            static_cast<QRadioButton*>(w)->setAutoExclusive(false);
            w->installEventFilter(this);
            break;
        case WidgetKind::CheckBox:
            w = new QCheckBox(parent);
            break;
        case WidgetKind::Slider: {
            auto* slider = new QSlider(Qt::Horizontal, parent);
            slider->setTickPosition(QSlider::TicksBelow);
            // Some styles leave a slider out of the Tab walk; the page's order includes it.
            slider->setFocusPolicy(Qt::StrongFocus);
            w = slider;
            break;
        }
    }
    w->setObjectName(text_of(info.name));
    w->setGeometry(static_cast<int>(info.left) * zoom_, static_cast<int>(info.top) * zoom_,
                   static_cast<int>(info.width) * zoom_, static_cast<int>(info.height) * zoom_);
    show_values(w, info);
    return w;
}

void PropertiesDialog::connect_edits(const WidgetInfo& info, QWidget* made) {
    const std::string name = info.name;
    if (auto* line = qobject_cast<QLineEdit*>(made))
        connect(line, &QLineEdit::textEdited, this, [this, name](const QString& text) {
            edit(name, "Text", Variant::string(text.toStdString()));
        });
    if (auto* button = qobject_cast<QAbstractButton*>(made))
        connect(button, &QAbstractButton::clicked, this, [this, name] { click(name); });
    if (auto* slider = qobject_cast<QSlider*>(made))
        connect(slider, &QSlider::valueChanged, this,
                [this, name](int value) { edit(name, "Value", Variant::long_(value)); });
}

void PropertiesDialog::edit(const std::string& name, const std::string& property,
                            const Variant& value) {
    runner_.perform(commands::PagePut{name, property, value});
    sync();
}

void PropertiesDialog::click(const std::string& name) {
    runner_.perform(commands::PageClick{name});
    sync();
    // A click the page ignores (an option already on) must not change the button on screen.
    show_page_widget(name);
}

void PropertiesDialog::show_page_widget(const std::string& name) {
    kestrone::IKestronePropertyPage* page = session_.page();
    const auto it = by_name_.find(name);
    if (!page || it == by_name_.end()) return;
    WidgetInfo info;
    if (page->GetWidget(index_of_.at(it->second), &info) == kestrone::S_OK)
        show_values(it->second, info);
    settle_option_stops();
}

// The options of one frame are one Tab stop, the one that is on (or the first, with none on).
void PropertiesDialog::settle_option_stops() {
    for (QWidget* w : tab_order_) {
        const std::vector<QWidget*> group = options_beside(w);
        if (group.empty() || group.front() != w) continue;
        const auto on = std::find_if(group.begin(), group.end(), [](QWidget* b) {
            return static_cast<QRadioButton*>(b)->isChecked();
        });
        for (QWidget* b : group)
            b->setFocusPolicy(b == (on == group.end() ? group.front() : *on) ? Qt::StrongFocus
                                                                             : Qt::ClickFocus);
    }
}

std::vector<QWidget*> PropertiesDialog::options_beside(QWidget* button) const {
    std::vector<QWidget*> out;
    if (!qobject_cast<QRadioButton*>(button)) return out;
    for (QWidget* w : tab_order_)
        if (qobject_cast<QRadioButton*>(w) && w->parentWidget() == button->parentWidget())
            out.push_back(w);
    return out;
}

bool PropertiesDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const int by = key == Qt::Key_Down || key == Qt::Key_Right ? 1
                   : key == Qt::Key_Up || key == Qt::Key_Left  ? -1
                                                               : 0;
    const std::vector<QWidget*> group = options_beside(static_cast<QWidget*>(watched));
    const auto at = std::find(group.begin(), group.end(), watched);
    if (by == 0 || at == group.end()) return QDialog::eventFilter(watched, event);
    const auto n = static_cast<std::ptrdiff_t>(group.size());
    QWidget* next = group[static_cast<std::size_t>(((at - group.begin()) + by + n) % n)];
    next->setFocus(Qt::TabFocusReason);
    static_cast<QRadioButton*>(next)->click();
    return true;
}

void PropertiesDialog::sync() {
    kestrone::IKestronePropertyPage* page = session_.page();
    if (page) {
        std::vector<std::int32_t> changed;
        std::uint64_t now = revision_;
        page->GetChangedWidgets(revision_, &changed, &now);
        for (std::int32_t i : changed) {
            if (i < 0 || static_cast<std::size_t>(i) >= widgets_.size()) continue;
            WidgetInfo info;
            if (page->GetWidget(i, &info) == kestrone::S_OK)
                show_values(widgets_[static_cast<std::size_t>(i)], info);
        }
        revision_ = now;
        settle_option_stops();
    }
    if (apply_) apply_->setEnabled(session_.page_changed());
}

bool PropertiesDialog::apply() {
    const commands::Reply reply = runner_.perform(commands::PageApply{});
    sync();
    emit applied();
    if (reply.is_ok()) return true;
    const int number = kestrone::basic_error_number(reply.status);
    if (report_)
        report_("The settings could not all be applied: " +
                (number ? console::error_text(number) : reply.text) + ".");
    return false;
}

void PropertiesDialog::ok() {
    if (session_.page_changed() && !apply()) return;
    closed_ = true;
    session_.close_page();
    accept();
}

void PropertiesDialog::cancel() {
    closed_ = true;
    session_.close_page();
    QDialog::reject();
}

void PropertiesDialog::reject() {
    if (!closed_) return cancel();
    QDialog::reject();
}

QWidget* PropertiesDialog::widget(const std::string& name) const {
    const auto it = by_name_.find(name);
    return it == by_name_.end() ? nullptr : it->second;
}

}  // namespace window
