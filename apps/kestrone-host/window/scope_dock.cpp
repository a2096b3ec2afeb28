#include "scope_dock.h"

#include <qcustomplot.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <limits>

namespace window {

namespace sl = signal_log;

namespace {

// A trace: a signal's value, or one bit of it as a digital lane (the tone: sounding or not).
struct Trace {
    const char* name;
    sl::Signal signal;
    int bit;  // -1: the value; 0 to 7: that bit; 8: not zero
};
constexpr int kValue = -1, kNonZero = 8;
constexpr Trace kTraces[] = {
    {"motor_left", sl::kMotorLeft, kValue},
    {"motor_right", sl::kMotorRight, kValue},
    {"phase_left", sl::kPhaseLeft, kValue},
    {"phase_right", sl::kPhaseRight, kValue},
    {"ldr", sl::kLdr, kValue},
    {"mic", sl::kMic, kValue},
    {"ir_left", sl::kIrLeft, kValue},
    {"ir_forward", sl::kIrForward, kValue},
    {"ir_right", sl::kIrRight, kValue},
    {"heading", sl::kHeading, kValue},
    {"x", sl::kX, kValue},
    {"y", sl::kY, kValue},
    {"theta", sl::kTheta, kValue},
    {"led0", sl::kLeds, 0},
    {"led1", sl::kLeds, 1},
    {"led2", sl::kLeds, 2},
    {"led3", sl::kLeds, 3},
    {"led4", sl::kLeds, 4},
    {"led5", sl::kLeds, 5},
    {"led6", sl::kLeds, 6},
    {"led7", sl::kLeds, 7},
    {"switch_left", sl::kSwitchLeft, kNonZero},
    {"switch_right", sl::kSwitchRight, kNonZero},
    {"line_left", sl::kLineLeft, kNonZero},
    {"line_right", sl::kLineRight, kNonZero},
    {"tone", sl::kToneHz, kNonZero},
};
constexpr std::size_t kTraceCount = std::size(kTraces);

// Shown at first: the motors and every digital lane.
bool shown_at_first(const Trace& t) {
    return t.bit != kValue || t.signal == sl::kMotorLeft || t.signal == sl::kMotorRight;
}

double value_of(const Trace& t, std::int32_t v) {
    if (v == sl::kAbsent) return std::numeric_limits<double>::quiet_NaN();
    if (t.bit == kValue) return v;
    return t.bit == kNonZero ? v != 0 : (v >> t.bit) & 1;
}

// A lane's name stands level beside it as the text of its one tick (a name run up a lane's short
// axis would cover its neighbours'); a trace's runs up its axis beside the numbers.
void name_axis(QCPAxis* y, const char* name, bool lane) {
    if (!lane) return y->setLabel(name);
    auto ticker = QSharedPointer<QCPAxisTickerText>::create();
    ticker->addTick(0.5, name);
    y->setTicker(ticker);
    y->setTickLength(0, 0);  // a tick unseen: without ticks no tick text is drawn
    y->grid()->setVisible(false);
}

constexpr int kLaneHeight = 22, kTraceHeight = 70;
constexpr int kFollowMs = 100;  // 10 updates a second: the charts cost little beside the panel

}  // namespace

ScopeDock::ScopeDock(const sl::SignalLog& log, QWidget* parent)
    : QDockWidget(tr("Scope"), parent), log_(log), chosen_(kTraceCount) {
    setObjectName("scope");
    auto* body = new QWidget(this);
    auto* column = new QVBoxLayout(body);
    auto* bar = new QHBoxLayout;
    auto* pause = new QToolButton(body);
    pause->setText(tr("Pause"));
    pause->setCheckable(true);
    connect(pause, &QToolButton::toggled, this, [this](bool on) { set_paused(on); });
    choose_ = new QToolButton(body);
    choose_->setText(tr("Signals"));
    choose_->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(choose_);
    for (std::size_t i = 0; i < kTraceCount; ++i) {
        chosen_[i] = shown_at_first(kTraces[i]);
        QAction* a = menu->addAction(kTraces[i].name);
        a->setCheckable(true);
        a->setChecked(chosen_[i]);
        connect(a, &QAction::toggled, this, [this, i](bool on) {
            chosen_[i] = on;
            rebuild();
        });
    }
    choose_->setMenu(menu);
    readout_ = new QLabel(body);
    readout_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    bar->addWidget(pause);
    bar->addWidget(choose_);
    bar->addWidget(readout_, 1);
    column->addLayout(bar);
    plot_ = new QCustomPlot(body);
    plot_->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    // A long live trace draws faster without antialiasing, as one polyline.
    plot_->setNotAntialiasedElements(QCP::aeAll);
    plot_->setPlottingHint(QCP::phFastPolylines, true);
    // It fills all of itself: what lies under it need not be painted at each replot.
    plot_->setAttribute(Qt::WA_OpaquePaintEvent);
    column->addWidget(plot_, 1);
    setWidget(body);
    connect(plot_, &QCustomPlot::mousePress, this, [this](QMouseEvent* e) {
        if (strips_.empty() || e->button() != Qt::RightButton) return;
        set_cursor(strips_.front().rect->axis(QCPAxis::atBottom)->pixelToCoord(e->pos().x()));
    });
    connect(&timer_, &QTimer::timeout, this, [this] {
        if (isVisible() && !paused_) follow();
    });
    timer_.start(kFollowMs);
    rebuild();
}

// Every strip anew, filled from the whole log.
void ScopeDock::rebuild() {
    plot_->clearItems();
    plot_->clearPlottables();
    plot_->plotLayout()->clear();
    strips_.clear();
    delete margins_;
    margins_ = new QCPMarginGroup(plot_);
    int height = 0;
    for (std::size_t i = 0; i < kTraceCount; ++i) {
        if (!chosen_[i]) continue;
        const Trace& t = kTraces[i];
        auto* rect = new QCPAxisRect(plot_);
        plot_->plotLayout()->addElement(static_cast<int>(strips_.size()), 0, rect);
        rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins_);
        rect->setRangeDrag(Qt::Horizontal);
        rect->setRangeZoom(Qt::Horizontal);
        const bool lane = t.bit != kValue;
        rect->setMinimumSize(0, lane ? kLaneHeight : kTraceHeight);
        rect->setMaximumSize(QWIDGETSIZE_MAX, lane ? kLaneHeight : kTraceHeight);
        QCPAxis* y = rect->axis(QCPAxis::atLeft);
        const sl::SignalInfo& info = sl::signal_table()[t.signal];
        y->setRange(lane ? QCPRange(-0.2, 1.2) : QCPRange(info.low, info.high));
        name_axis(y, t.name, lane);
        auto* graph = new QCPGraph(rect->axis(QCPAxis::atBottom), y);
        graph->setLineStyle(QCPGraph::lsStepLeft);
        graph->setAdaptiveSampling(true);
        strips_.push_back({i, rect, graph});
        height += lane ? kLaneHeight : kTraceHeight;
        QCPAxis* x = rect->axis(QCPAxis::atBottom);
        x->setTickLabels(false);
        // A lane's time axis is a plain rule: its ticks and grid would be a third of each replot.
        x->setTicks(!lane);
        x->grid()->setVisible(!lane);
        connect(x, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this,
                [this, x](const QCPRange& r) {
                    if (syncing_) return;
                    syncing_ = true;
                    for (const Strip& s : strips_)
                        if (s.rect->axis(QCPAxis::atBottom) != x)
                            s.rect->axis(QCPAxis::atBottom)->setRange(r);
                    syncing_ = false;
                });
    }
    if (!strips_.empty()) {
        QCPAxis* time = strips_.back().rect->axis(QCPAxis::atBottom);
        time->setTicks(true);
        time->setTickLabels(true);
    }
    plot_->setMinimumHeight(height + 40);
    added_to_ = -1;
    follow();
}

void ScopeDock::add_moment(const sl::Moment& m, bool all) {
    for (const Strip& s : strips_) {
        const Trace& t = kTraces[s.trace];
        if (!all && !m.changed.test(t.signal)) continue;
        s.graph->data()->remove(m.at_ms);  // an open moment seen before, changed since
        s.graph->data()->add(QCPGraphData(m.at_ms, value_of(t, m.values[t.signal])));
    }
}

void ScopeDock::follow() {
    const std::int64_t now = log_.last_ms();
    bool first = added_to_ < 0;
    // The stretch each trace held on to the present moment was drawn to `now` last time.
    for (const Strip& s : strips_) {
        s.graph->data()->removeAfter(std::max<double>(added_to_, 0));
        s.graph->data()->removeBefore(log_.first_ms());
    }
    log_.replay(std::max<std::int64_t>(added_to_, 0), now, [&](const sl::Moment& m) {
        add_moment(m, first);
        first = false;
        added_to_ = m.at_ms;
    });
    for (const Strip& s : strips_)
        if (!s.graph->data()->isEmpty() && now > added_to_)
            s.graph->data()->add(QCPGraphData(now, (s.graph->data()->constEnd() - 1)->value));
    if (!paused_ && !strips_.empty())
        strips_.front().rect->axis(QCPAxis::atBottom)->setRange(now - span_ms_, now);
    show_cursor();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ScopeDock::set_paused(bool paused) {
    // Resumed: it follows the clock again with the span it was zoomed to.
    if (!paused && !strips_.empty()) span_ms_ = time_range().second - time_range().first;
    paused_ = paused;
    if (!paused_) follow();
}

std::vector<std::string> ScopeDock::shown() const {
    std::vector<std::string> names;
    for (const Strip& s : strips_)
        names.emplace_back(kTraces[s.trace].name);
    return names;
}

void ScopeDock::set_shown(const std::vector<std::string>& names) {
    const QList<QAction*> actions = choose_->menu()->actions();
    for (std::size_t i = 0; i < kTraceCount; ++i) {
        chosen_[i] = std::find(names.begin(), names.end(), kTraces[i].name) != names.end();
        const QSignalBlocker quiet(actions[static_cast<qsizetype>(i)]);
        actions[static_cast<qsizetype>(i)]->setChecked(chosen_[i]);
    }
    rebuild();
}

void ScopeDock::set_cursor(double ms) {
    cursor_ms_ = ms;
    show_cursor();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

std::vector<std::pair<std::string, std::optional<double>>> ScopeDock::cursor_values() const {
    std::vector<std::pair<std::string, std::optional<double>>> out;
    for (const Strip& s : strips_) {
        std::optional<double> v;
        const auto& points = *s.graph->data();
        const auto after =
            std::upper_bound(points.constBegin(), points.constEnd(), cursor_ms_.value_or(-1),
                             [](double t, const QCPGraphData& d) { return t < d.key; });
        if (after != points.constBegin() && !std::isnan((after - 1)->value)) v = (after - 1)->value;
        out.emplace_back(kTraces[s.trace].name, v);
    }
    return out;
}

std::pair<double, double> ScopeDock::time_range() const {
    if (strips_.empty()) return {0, span_ms_};
    const QCPRange r = strips_.front().rect->axis(QCPAxis::atBottom)->range();
    return {r.lower, r.upper};
}

// A line through every strip at the cursor, and the values it reads above them.
void ScopeDock::show_cursor() {
    plot_->clearItems();
    if (!cursor_ms_) return readout_->clear();
    QString text = tr("%1 ms:").arg(*cursor_ms_, 0, 'f', 0);
    for (const auto& [name, value] : cursor_values())
        text += QString(" %1 %2").arg(QString::fromStdString(name),
                                      value ? QString::number(*value) : QString("-"));
    readout_->setText(text);
    for (const Strip& s : strips_) {
        auto* line = new QCPItemStraightLine(plot_);
        line->setClipAxisRect(s.rect);
        for (QCPItemPosition* p : {line->point1, line->point2}) {
            p->setAxes(s.rect->axis(QCPAxis::atBottom), s.rect->axis(QCPAxis::atLeft));
            p->setAxisRect(s.rect);
        }
        line->point1->setCoords(*cursor_ms_, 0);
        line->point2->setCoords(*cursor_ms_, 1);
        line->setPen(QPen(Qt::red));
    }
}

}  // namespace window
