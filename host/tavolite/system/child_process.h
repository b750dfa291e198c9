// What the command needs of the system: where it stands itself, running a program, Ctrl-C.
//
// One implementation per system: child_process_posix.cpp, child_process_windows.cpp.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// The path of the running program's own file. Throws std::system_error.
std::filesystem::path OwnProgram();

// "linfit" with the suffix that programs have on this system.
std::filesystem::path ProgramFileName(const std::string& name);

// The command line in UTF-8, the program's name first.
std::vector<std::string> Utf8Arguments(int argc, char** argv);

// Makes a console of this process take UTF-8.
void UseUtf8Console();

class ChildProcess {
 public:
  struct Exit {
    int code = 0;              // exit code; 128 + the signal's number when a signal ended it
    bool interrupted = false;  // ended by Ctrl-C or its like
  };

  ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  // Runs `program` with `argument` as its only one and waits for its end. Its standard output goes
  // to `on_output`, piece by piece as it comes; its standard error is ours, its input is empty.
  // Throws std::system_error when it can't be started.
  Exit Run(const std::filesystem::path& program, const std::filesystem::path& argument,
           const std::function<void(std::string_view)>& on_output);

  // Ends the program that Run has started, if there is one, and returns when it is gone. To be
  // called from another thread than Run.
  void Stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// From here on, Ctrl-C and its like run `cleanup` in a thread of its own, then end the process with
// exit status 130. To be called once, before any other thread starts.
void OnInterrupt(std::function<void()> cleanup);

}  // namespace host
