// The seconds of each step of a run, for the timing file. A run's steps show in the calls that
// reach the library: each call belongs to a group, and a step lasts from the first call of its
// group to the first call of another one.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

enum class CallGroup { kStart, kLoad, kRows, kColumns, kReport, kSolution };

class StepObserver {
 public:
  // Without this, nothing is measured. To be called when the control file, which may be waited for,
  // has been read.
  void Start() {
    measures_ = true;
    begun_ = Clock::now();
  }

  void See(CallGroup group) {
    if (!measures_) return;
    if (group != group_) Change(group);
    // What the solver computes behind its last call for a column is no part of the columns.
    if (group == CallGroup::kColumns) last_call_ = Clock::now();
  }
  // A line of the status file; more than a millisecond before one is a step that bears its name.
  void SeeStatusLine(std::string_view line);

  // Ends the last step and writes one line a step: seconds, a tab, the step's name. Throws
  // FileError.
  void Write(const std::filesystem::path& file);

 private:
  using Clock = std::chrono::steady_clock;

  void Change(CallGroup group);
  void End(std::string_view step, Clock::time_point now);

  bool measures_ = false;
  CallGroup group_ = CallGroup::kStart;
  Clock::time_point begun_ = Clock::now();
  Clock::time_point last_call_ = begun_;
  std::vector<std::pair<double, std::string>> steps_;
};

}  // namespace host
