// The chip's C compiler: SDCC with its pic14 port, installed under a prefix of its own.
#pragma once

#include <string>
#include <vector>

namespace kflow {

// Runs `argv` (its first a full path) in `folder`; its standard output and error come back as one
// text. True when it exited with 0.
bool run_in(const std::string& folder, const std::vector<std::string>& argv, std::string& output);

// ${KESTRONE_PIC_PREFIX:-/opt/kestrone-pic}/bin/sdcc
std::string sdcc_path();

struct CompileResult {
    bool ok = false;
    bool missing = false;  // no compiler at sdcc_path()
    std::string hex;       // the file written, on success
    std::string output;    // what the compiler said, or why it could not run
};

// Compiles `c_file` for the PIC16F877A in the file's own folder, where SDCC leaves the .hex
// and its other outputs.
CompileResult compile_for_chip(const std::string& c_file);

}  // namespace kflow
