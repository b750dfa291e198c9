// Seconds of the steps of one solve, the solver's own among them.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace host {

class StepTimes {
 public:
  // Ends a step: it began when the last one ended, or with this object.
  void End(const std::string& step);
  // Ends the step in which the solver ran; `solver_steps` is the timing file that it wrote. What it
  // does not account for is the time of starting and ending its process.
  void EndSolver(const std::filesystem::path& solver_steps);
  // One line a step: seconds, a tab, the step's name. Throws FileError.
  void Write(const std::filesystem::path& file) const;

 private:
  using Clock = std::chrono::steady_clock;
  double Lap();

  Clock::time_point last_ = Clock::now();
  std::vector<std::pair<double, std::string>> steps_;
};

}  // namespace host
