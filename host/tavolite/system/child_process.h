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

  // Starts `program`, whose only argument is the name of a file. It waits for what stands there
  // until Run gives it, so that its start takes no time later. Throws std::system_error.
  void Start(const std::filesystem::path& program);
  // Gives the program that was started its text and waits for its end. On Windows, where
  // a pipe can't be named so, `file` takes the text and the program is started here. The program's
  // standard output goes to `on_output`, piece by piece as it comes; its standard error is ours,
  // its input is empty. `meanwhile` is what this process does while the other one begins. What one
  // of the two throws comes out when the program has ended. Throws std::system_error.
  Exit Run(std::string_view text, const std::filesystem::path& file,
           const std::function<void(std::string_view)>& on_output,
           const std::function<void()>& meanwhile);
  // Ends a program that still waits for Run.
  void EndWaiting();

  // Ends the program that was started, if there is one, and returns when it is gone; another one is
  // not started. To be called from another thread than the others. Gives the program's process
  // number, 0 when none was started.
  int Stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace host
