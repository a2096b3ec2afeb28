// A log bound for a file, as the console's `log start FILE` makes it: CSV or VCD by the file's
// extension, checked at the start so that a file that cannot be written is told at once, and
// written whole at the end beside the old file and renamed over it, so that the old file is
// untouched by a log that fails.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "signal_log.h"

namespace signal_log {

// A log as it stands into `path`, CSV or VCD by its extension, the old file untouched when it
// fails: the moments of change written, or nullopt with `why`.
std::optional<std::size_t> export_log(const SignalLog& log, const std::string& path,
                                      std::string* why);

class LogFile {
  public:
    // A log started on `stage` for `path`; null with `why` for an extension other than .csv and
    // .vcd, or a file that cannot be written.
    static std::unique_ptr<LogFile> start(stage::Stage& stage, const std::string& path,
                                          std::string* why);
    // A log not finished leaves no file.
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    // Stops the log and writes the file: the moments of change written, or nullopt with `why`.
    std::optional<std::size_t> finish(std::string* why);
    const std::string& path() const { return path_; }
    const SignalLog& log() const { return log_; }

  private:
    LogFile(stage::Stage& stage, std::string path, std::string target, std::string temp, bool vcd);

    std::string path_;    // as the user named it
    std::string target_;  // the file replaced: a link's target
    std::string temp_;    // the new file, made at the start
    bool vcd_;
    SignalLog log_;
};

}  // namespace signal_log
