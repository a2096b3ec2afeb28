#include "diagnostic.h"

#include <algorithm>

namespace kflow {

std::string format_diagnostic(const std::string& file, const Diagnostic& d) {
    return file + ":" + std::to_string(d.at.line) + ":" + std::to_string(d.at.column) + ": " +
           (d.severity == Diagnostic::Severity::Warning ? "warning: " : "") + d.text;
}

std::vector<Diagnostic> Diagnostics::sorted() const {
    std::vector<Diagnostic> out = list_;
    std::stable_sort(out.begin(), out.end(), [](const Diagnostic& a, const Diagnostic& b) {
        return a.at.line != b.at.line ? a.at.line < b.at.line : a.at.column < b.at.column;
    });
    return out;
}

}  // namespace kflow
