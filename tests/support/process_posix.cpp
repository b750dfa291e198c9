#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/support/process.h"

namespace testing_support {

namespace {

void Redirect(const char* file, int flags, int descriptor) {
  const int opened = open(file, flags, 0600);
  if (opened < 0 || dup2(opened, descriptor) < 0) {
    _exit(127);
  }
  close(opened);
}

}  // namespace

int RunProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const RunOptions& options, const std::filesystem::path& out,
               const std::filesystem::path& err) {
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error("fork failed");
  }
  if (child == 0) {
    Redirect("/dev/null", O_RDONLY, STDIN_FILENO);
    Redirect(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    Redirect(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    if (!options.directory.empty() && chdir(options.directory.c_str()) != 0) {
      _exit(127);
    }
    for (const auto& [name, value] : options.environment) {
      setenv(name.c_str(), value.c_str(), 1);
    }
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void SetVariable(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

void KillThisProcess() {
  kill(getpid(), SIGKILL);
  std::abort();  // not reached
}

}  // namespace testing_support
