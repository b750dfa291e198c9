// One run of a program that is made to fail, watched from outside.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace faults {

struct Command {
  std::filesystem::path program;
  std::vector<std::string> arguments;
  std::filesystem::path directory;
  std::map<std::string, std::string> environment;
  std::filesystem::path out, err;  // files that take the outputs
};

struct Outcome {
  int status = 0;  // 128 + the signal's number when a signal ended it
  bool timed_out = false;
};

// Runs it in a process group of its own. `meddle` is called once with the group's number as soon as
// it has started. After `limit` the whole group is killed.
Outcome RunWatched(const Command& command, std::chrono::seconds limit,
                   const std::function<void(pid_t)>& meddle = nullptr);

}  // namespace faults
