#include "properties_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
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
        // One group: the button put on takes its neighbour off and becomes the group's one Tab
        // stop. Only the page can have them all off (before its selection), so that is said
        // outside the group's rule.
        if (info.value != 0) {
            option->setChecked(true);
        } else if (option->isChecked()) {
            option->setAutoExclusive(false);
            option->setChecked(false);
            option->setAutoExclusive(true);
        }
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

// One Tab stop for each frame's option buttons: the one that is on, or the first while none is.
// Qt moves the stop itself only when an arrow moves through them.
void one_tab_stop_a_group(const std::vector<QWidget*>& widgets) {
    std::map<QWidget*, QRadioButton*> stop;
    for (QWidget* w : widgets)
        if (auto* option = qobject_cast<QRadioButton*>(w)) {
            QRadioButton*& held = stop[option->parentWidget()];
            if (!held || (option->isChecked() && !held->isChecked())) held = option;
        }
    for (QWidget* w : widgets)
        if (auto* option = qobject_cast<QRadioButton*>(w))
            option->setFocusPolicy(static_cast<Qt::FocusPolicy>(
                stop[option->parentWidget()] == option ? option->focusPolicy() | Qt::TabFocus
                                                       : option->focusPolicy() & ~Qt::TabFocus));
}

}  // namespace

PropertiesDialog::PropertiesDialog(ActionRunner& runner,
                                   std::function<void(const std::string&)> report, int zoom,
                                   QWidget* parent)
    : QDialog(parent),
      runner_(runner),
      session_(runner.context().stage.session()),
      report_(std::move(report)),
      zoom_(std::max(zoom, 1)) {
    // The page's boxes are measured for the small dialogue font the panel draws with.
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
    std::vector<WidgetInfo> shown;
    for (std::int32_t i = 0; i < count; ++i) {
        WidgetInfo info;
        if (page->GetWidget(i, &info) != kestrone::S_OK) continue;
        shown.push_back(info);
        const bool inside = info.container >= 0 && info.container < i;
        QWidget* made =
            make(info, inside ? widgets_[static_cast<std::size_t>(info.container)] : area);
        widgets_.push_back(made);
        by_name_[info.name] = made;
        if (made->focusPolicy() != Qt::NoFocus) order.emplace_back(info.tab_index, made);
        connect_edits(info, made);
    }
    // Values once every widget stands: an option button put on takes its neighbour off.
    for (std::size_t i = 0; i < widgets_.size(); ++i)
        show_values(widgets_[i], shown[i]);
    one_tab_stop_a_group(widgets_);
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
    for (std::size_t i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1].second, order[i].second);

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
        case WidgetKind::TextBox: {
            // The page's text boxes take text of any length.
            auto* line = new QLineEdit(parent);
            line->setMaxLength(std::numeric_limits<int>::max());
            w = line;
            break;
        }
        case WidgetKind::OptionButton:
            // The option buttons of one frame are one group: arrows choose, a click on the one
            // that is on leaves it on.
            w = new QRadioButton(parent);
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
        one_tab_stop_a_group(widgets_);
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
