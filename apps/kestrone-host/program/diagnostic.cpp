#include "diagnostic.h"

#include <algorithm>
#include <iterator>

namespace kflow {

std::string format_diagnostic(const std::string& file, const Diagnostic& d) {
    return file + ":" + std::to_string(d.at.line) + ":" + std::to_string(d.at.column) + ": " +
           (d.severity == Diagnostic::Severity::Warning ? "warning: " : "") + d.text;
}

namespace {

// By line, then by column.
bool placed_before(const Diagnostic& a, const Diagnostic& b) {
    return a.at.line != b.at.line ? a.at.line < b.at.line : a.at.column < b.at.column;
}

}  // namespace

std::vector<Diagnostic> in_order_of_place(const std::vector<Diagnostic>& errors,
                                          const std::vector<Diagnostic>& warnings) {
    std::vector<Diagnostic> out;
    out.reserve(errors.size() + warnings.size());
    // Of two at one place, merge takes the one of the first list first.
    std::merge(errors.begin(), errors.end(), warnings.begin(), warnings.end(),
               std::back_inserter(out), placed_before);
    return out;
}

std::vector<Diagnostic> Diagnostics::sorted() const {
    std::vector<Diagnostic> out = list_;
    std::stable_sort(out.begin(), out.end(), placed_before);
    return out;
}

}  // namespace kflow
