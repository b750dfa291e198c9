// The environment of one solve: what the control file says, the log, the status file, the clock.
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "base/control_file.h"
#include "kervdclib/step_observer.h"

namespace host {

class Environment {
 public:
  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() { End(); }

  // Reads the control file and opens the log and the status file. Throws FileError.
  void Initialize(const std::filesystem::path& control_file);
  [[nodiscard]] bool IsInitialized() const { return initialized_; }
  [[nodiscard]] const ControlFile& Control() const { return control_; }

  void Log(std::string_view line);
  // A line of its own in the status file: a line begun by StatPiece is ended first.
  void StatOwnLine(std::string_view line);
  // Ends the line that StatPiece has begun, or is a line of its own.
  void Stat(std::string_view line);
  void StatPiece(std::string_view text);
  // Lines reach the status file one by one, so that none is lost however the process ends; between
  // these two, where there may be millions, they are written in large pieces.
  void BeginBlock() { in_block_ = true; }
  void EndBlock();

  // Ends the files, with what another library has failed at as their last line. False when they
  // could not be written as a whole; the reason is on standard error then.
  bool End() noexcept;

  // "*** " and the reason as a line of the status file and the log before the process ends; without
  // files, to standard error. Allocates nothing.
  void LastLine(std::string_view reason) noexcept;

  // Seconds since the last call; the first time, since the control file, which may be waited for,
  // was read.
  double TimeDiff();
  // Sees the calls of the model object as well; the timing file takes what it makes of them.
  [[nodiscard]] StepObserver& Steps() { return steps_; }

 private:
  using Clock = std::chrono::steady_clock;

  // A file that is written, and the error number of the first failure.
  struct Output {
    std::ofstream stream;
    int fault = 0;
    void Flush();
    void Close();
  };

  void EndLine();
  bool EndFiles();
  void FlushStatus();

  bool initialized_ = false;
  ControlFile control_;
  Output log_;  // closed: standard output
  Output status_;
  bool line_begun_ = false;
  bool in_block_ = false;
  Clock::time_point last_difference_ = Clock::now();
  StepObserver steps_;
};

// What an environment handle points to. The model object shares the environment, so that the order
// of freeing does not matter.
using EnvironmentObject = std::shared_ptr<Environment>;

}  // namespace host
