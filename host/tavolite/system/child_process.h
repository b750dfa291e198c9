// Running a program.
//
// One implementation per system: child_process_posix.cpp, child_process_windows.cpp.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

namespace host {

class ChildProcess {
 public:
  struct Exit {
    int code = 0;              // exit code; 128 + the signal's number when a signal ended it
    int process = 0;           // the process's number
    bool interrupted = false;  // ended by Ctrl-C or its like, or never started after Stop
  };

  ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  // Runs `program` with `argument` as its only one and waits for its end. Its standard output goes
  // to `on_output`, piece by piece as it comes; its standard error is ours, its input is empty.
  // `meanwhile` is what this process does while the other one starts; what it throws comes out when
  // that has ended. Throws std::system_error when it can't be started.
  Exit Run(const std::filesystem::path& program, const std::filesystem::path& argument,
           const std::function<void(std::string_view)>& on_output,
           const std::function<void()>& meanwhile);

  // Ends the program that Run has started, if there is one, and returns when it is gone; Run does
  // not start another one. To be called from another thread than Run. Gives the program's process
  // number, 0 when none was started.
  int Stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace host
