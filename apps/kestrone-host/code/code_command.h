// kestrone-host code PROGRAM.kflow [-o FILE] [--project FILE] [--hex [--trace FILE.vcd --ms N]]
//                    [--module PATH]
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "kestrone/memory_store.h"

namespace kflow {

struct CodeOptions {
    std::string program;  // the .kflow file
    std::string output;   // the C file; empty: standard output (with --hex: beside the program)
    std::string project;  // a project file whose settings the component takes; empty: defaults
    bool hex = false;     // also compile the C for the chip
    std::string module;   // the component module
    std::string trace;    // with hex: the chip's pins as VCD, run in gpsim (the wait for the start
                          // button left out, so that its time 0 is the panel's)
    std::int64_t trace_ms = 0;
};

// Reads a project file's store; false with `error` set when it cannot.
using ProjectReader =
    std::function<bool(const std::string& path, std::vector<kestrone::MemoryStore::Entry>& entries,
                       std::string& error)>;

// Exit statuses of the command.
enum CodeStatus : int {
    kCodeWritten = 0,     // warnings, if any, listed as FILE:LINE:COLUMN: warning: TEXT
    kProgramFaulty = 1,   // every fault and warning listed by place, FILE:LINE:COLUMN: TEXT
    kCannotBuild = 2,     // a file, the module or the component failed
    kCompilerFailed = 3,  // the chip's compiler is missing or refused the C
    kTraceFailed = 4,     // gpsim is missing or failed, or the trace could not be written
};

// The C goes to `out` when no output file is named; faults and notes go to `err`.
int run_code_command(const CodeOptions& options, const ProjectReader& read_project,
                     std::ostream& out, std::ostream& err);

}  // namespace kflow
