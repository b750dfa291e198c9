// A line of progress on standard error, for people who wait.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace host {

// Shows nothing in the first two seconds, and nothing at all where standard error is no terminal.
class Progress {
 public:
  Progress(const std::string& text, bool wanted);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();  // takes the line away

  // `fraction` of the work is done; negative when the whole is not known.
  void Update(double fraction);

 private:
  using Clock = std::chrono::steady_clock;

  std::string text_;
  bool wanted_;
  Clock::time_point next_;
  std::size_t shown_ = 0;  // width of the line on the terminal
};

}  // namespace host
