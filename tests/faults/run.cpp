#include "tests/faults/run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <thread>

namespace faults {
namespace {

[[noreturn]] void BecomeProgram(const Command& command, const std::vector<char*>& arguments) {
  setpgid(0, 0);
  const auto redirect = [](const char* file, int flags, int descriptor) {
    const int opened = open(file, flags | O_CLOEXEC, 0600);
    if (opened < 0 || dup2(opened, descriptor) < 0) _exit(127);
  };
  redirect("/dev/null", O_RDONLY, STDIN_FILENO);
  redirect(command.out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
  redirect(command.err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
  if (chdir(command.directory.c_str()) != 0) _exit(127);
  for (const auto& [name, value] : command.environment) setenv(name.c_str(), value.c_str(), 1);
  execv(command.program.c_str(), arguments.data());
  _exit(127);
}

}  // namespace

Outcome RunWatched(const Command& command, std::chrono::seconds limit,
                   const std::function<void(pid_t)>& meddle) {
  std::vector<char*> arguments{const_cast<char*>(command.program.c_str())};
  for (const std::string& argument : command.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child < 0) std::abort();
  if (child == 0) BecomeProgram(command, arguments);
  setpgid(child, child);
  if (meddle) meddle(child);

  Outcome outcome;
  const auto end = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (!outcome.timed_out && std::chrono::steady_clock::now() > end) {
      outcome.timed_out = true;
      kill(-child, SIGKILL);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  outcome.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  return outcome;
}

}  // namespace faults
