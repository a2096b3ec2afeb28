#include "program_editor.h"

#include <QFontDatabase>
#include <QToolTip>
#include <algorithm>

namespace window {

using Severity = kflow::Diagnostic::Severity;

namespace {
constexpr int kNumberMargin = 0, kMarkMargin = 1;
constexpr int kBreakMarker = 1, kArrowMarker = 2, kLineMarker = 3;
constexpr int kErrorIndicator = 8, kWarningIndicator = 9;
// How long the pointer rests before a problem is told, in milliseconds.
constexpr int kDwellMs = 400;
const QColor kErrorColour(0xd0, 0x20, 0x20), kWarningColour(0xe0, 0x90, 0x00),
    kRunningLine(0xff, 0xf3, 0xa0), kBreakColour(0xc0, 0x10, 0x10);

int indicator_of(Severity s) {
    return s == Severity::Error ? kErrorIndicator : kWarningIndicator;
}
}  // namespace

ProgramEditor::ProgramEditor(QWidget* parent)
    : QsciScintilla(parent), lexer_(new KflowLexer(this)) {
    setUtf8(true);
    setLexer(lexer_);
    setMarginType(kNumberMargin, NumberMargin);
    setMarginWidth(kNumberMargin, QStringLiteral("00000"));
    setMarginType(kMarkMargin, SymbolMargin);
    setMarginWidth(kMarkMargin, 16);
    setMarginSensitivity(kMarkMargin, true);
    setMarginMarkerMask(kMarkMargin, 1 << kBreakMarker | 1 << kArrowMarker);
    markerDefine(Circle, kBreakMarker);
    setMarkerBackgroundColor(kBreakColour, kBreakMarker);
    markerDefine(RightArrow, kArrowMarker);
    markerDefine(Background, kLineMarker);
    setMarkerBackgroundColor(kRunningLine, kLineMarker);
    for (const auto& [number, colour] :
         {std::pair{kErrorIndicator, kErrorColour}, {kWarningIndicator, kWarningColour}}) {
        indicatorDefine(SquiggleIndicator, number);
        setIndicatorForegroundColor(colour, number);
    }
    setIndentationsUseTabs(false);
    setTabWidth(4);
    setAutoIndent(true);
    setCaretLineVisible(false);
    // The text's own width, not a fixed one, decides whether it scrolls sideways.
    SendScintilla(SCI_SETSCROLLWIDTH, 1);
    SendScintilla(SCI_SETSCROLLWIDTHTRACKING, true);
    SendScintilla(SCI_SETMOUSEDWELLTIME, kDwellMs);
    connect(this, &QsciScintilla::SCN_DWELLSTART, this, &ProgramEditor::dwell);
    connect(this, &QsciScintilla::SCN_DWELLEND, this, [] { QToolTip::hideText(); });
    connect(this, &QsciScintilla::marginClicked, this,
            [this](int, int line, Qt::KeyboardModifiers) {
                toggle_breakpoint(line + 1);
                emit breakpoints_changed();
            });
}

std::pair<int, int> ProgramEditor::extent(const kflow::Diagnostic& d) const {
    const int line = d.at.line - 1;
    QString text = QsciScintilla::text(line);
    while (text.endsWith('\n') || text.endsWith('\r'))
        text.chop(1);
    // The characters of the line as the checker counts them: code points.
    const int length = static_cast<int>(text.toUcs4().size());
    if (length == 0) return {0, 0};
    const int from = std::clamp(d.at.column - 1, 0, length - 1);
    const long start = positionFromLineIndex(line, from);
    const long end = SendScintilla(SCI_WORDENDPOSITION, static_cast<unsigned long>(start), true);
    int end_line = line, end_index = from + 1;
    if (end > start) lineIndexFromPosition(static_cast<int>(end), &end_line, &end_index);
    return {from, std::max(end_index, from + 1)};
}

void ProgramEditor::show_problems(std::vector<kflow::Diagnostic> problems) {
    problems_ = std::move(problems);
    const int last = lines() - 1;
    for (const int indicator : {kErrorIndicator, kWarningIndicator})
        clearIndicatorRange(0, 0, last, lineLength(last), indicator);
    for (const kflow::Diagnostic& d : problems_) {
        if (d.at.line < 1 || d.at.line > lines()) continue;
        const auto [from, to] = extent(d);
        if (to > from)
            fillIndicatorRange(d.at.line - 1, from, d.at.line - 1, to, indicator_of(d.severity));
    }
}

std::vector<ProgramEditor::Mark> ProgramEditor::marks() const {
    std::vector<Mark> out;
    const long size = SendScintilla(SCI_GETLENGTH);
    for (const Severity s : {Severity::Error, Severity::Warning}) {
        const unsigned long indicator = static_cast<unsigned long>(indicator_of(s));
        for (long at = 0; at < size;) {
            const long end = SendScintilla(SCI_INDICATOREND, indicator, at);
            if (SendScintilla(SCI_INDICATORVALUEAT, indicator, at) != 0) {
                int line = 0, from = 0, end_line = 0, to = 0;
                lineIndexFromPosition(static_cast<int>(at), &line, &from);
                lineIndexFromPosition(static_cast<int>(end), &end_line, &to);
                out.push_back({line + 1, from + 1, to - from, s});
            }
            if (end <= at) break;
            at = end;
        }
    }
    std::sort(out.begin(), out.end(), [](const Mark& a, const Mark& b) {
        return std::pair(a.line, a.column) < std::pair(b.line, b.column);
    });
    return out;
}

QString ProgramEditor::problems_at(int line, int column) const {
    QStringList found;
    for (const kflow::Diagnostic& d : problems_) {
        if (d.at.line != line) continue;
        const auto [from, to] = extent(d);
        if (column - 1 >= from && column - 1 < to)
            found << QString::fromStdString((d.severity == Severity::Warning ? "warning: " : "") +
                                            d.text);
    }
    return found.join('\n');
}

void ProgramEditor::dwell(int position, int x, int y) {
    if (position < 0) return;
    int line = 0, index = 0;
    lineIndexFromPosition(position, &line, &index);
    const QString text = problems_at(line + 1, index + 1);
    if (!text.isEmpty()) QToolTip::showText(viewport()->mapToGlobal(QPoint(x, y)), text, this);
}

void ProgramEditor::show_line(int line) {
    if (line == shown_line_) return;
    shown_line_ = line;
    markerDeleteAll(kArrowMarker);
    markerDeleteAll(kLineMarker);
    if (line < 1 || line > lines()) return;
    markerAdd(line - 1, kArrowMarker);
    markerAdd(line - 1, kLineMarker);
    ensureLineVisible(line - 1);
}

std::set<int> ProgramEditor::breakpoints() const {
    std::set<int> out;
    for (int line = markerFindNext(0, 1u << kBreakMarker); line >= 0;
         line = markerFindNext(line + 1, 1u << kBreakMarker))
        out.insert(line + 1);
    return out;
}

void ProgramEditor::set_breakpoints(const std::set<int>& lines) {
    if (lines == breakpoints()) return;
    markerDeleteAll(kBreakMarker);
    for (const int line : lines)
        markerAdd(line - 1, kBreakMarker);
    emit breakpoint_marks_changed();
}

void ProgramEditor::toggle_breakpoint(int line) {
    if (markersAtLine(line - 1) & (1u << kBreakMarker))
        markerDelete(line - 1, kBreakMarker);
    else
        markerAdd(line - 1, kBreakMarker);
    emit breakpoint_marks_changed();
}

void ProgramEditor::go_to(int line, int column) {
    setCursorPosition(std::max(line - 1, 0), std::max(column - 1, 0));
    ensureLineVisible(std::max(line - 1, 0));
    setFocus();
}

int ProgramEditor::caret_line() const {
    int line = 0, index = 0;
    getCursorPosition(&line, &index);
    return line + 1;
}

void ProgramEditor::set_text_zoom(int zoom) {
    zoomTo(4 * (std::clamp(zoom, 1, 3) - 1));
    setMarginWidth(kNumberMargin, QStringLiteral("00000"));
}

}  // namespace window
