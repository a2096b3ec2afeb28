// A fault in a robot program, at its place in the file.
#pragma once

#include <string>
#include <vector>

namespace kflow {

struct Place {
    int line = 0;    // from 1
    int column = 0;  // from 1, in characters of the line
};

struct Diagnostic {
    enum class Severity : unsigned char { Error, Warning };
    Place at;
    std::string text;
    // An error stops the program from running; a warning marks a line that runs, but not as it
    // reads.
    Severity severity = Severity::Error;
};

// FILE:LINE:COLUMN: TEXT, or FILE:LINE:COLUMN: warning: TEXT, the form compilers use, so that
// editors can jump to the place.
std::string format_diagnostic(const std::string& file, const Diagnostic& d);

// Errors and warnings in one list by place; of an error and a warning at one place, the error
// first.
std::vector<Diagnostic> in_order_of_place(const std::vector<Diagnostic>& errors,
                                          const std::vector<Diagnostic>& warnings);

// Collects the faults of every stage; they are listed in the order of their places.
class Diagnostics {
  public:
    void add(Place at, std::string text,
             Diagnostic::Severity severity = Diagnostic::Severity::Error) {
        list_.push_back({at, std::move(text), severity});
    }
    bool empty() const { return list_.empty(); }
    // Sorted by place; of two at the same place, the one found first stays first.
    std::vector<Diagnostic> sorted() const;

  private:
    std::vector<Diagnostic> list_;
};

}  // namespace kflow
