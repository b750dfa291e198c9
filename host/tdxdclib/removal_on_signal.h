// The removal of a half-written file when a signal ends the process.
//
// One implementation per system: removal_on_signal_posix.cpp, removal_on_signal_windows.cpp.
#pragma once

#include <filesystem>

namespace host {

// While the object lives, SIGINT, SIGTERM and SIGHUP remove the file before they end the process. A
// signal that the program ignores or handles itself stays as it is. On Windows nothing can remove a
// file that is open: what is left goes when the next process writes the same target.
class RemovalOnSignal {
 public:
  explicit RemovalOnSignal(const std::filesystem::path& file);
  RemovalOnSignal(const RemovalOnSignal&) = delete;
  RemovalOnSignal& operator=(const RemovalOnSignal&) = delete;
  ~RemovalOnSignal();

 private:
  std::filesystem::path file_;
};

}  // namespace host
