#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "tavolite/system/child_process.h"
#include "tavolite/system/first_failure.h"
#include "tavolite/system/interrupt_signals_posix.h"

extern char** environ;

namespace host {
namespace {

[[noreturn]] void Fail(int code, const std::string& what) {
  throw std::system_error(code, std::generic_category(), what);
}

// Programs that are started inherit neither end.
struct Pipe {
  std::array<int, 2> ends{-1, -1};  // that is read and that is written; -1: closed

  Pipe() = default;
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    Close(0);
    Close(1);
  }
  void Open() {
    if (pipe2(ends.data(), O_CLOEXEC) != 0) Fail(errno, "pipe");
  }
  void Close(std::size_t end) {
    if (ends[end] >= 0) close(std::exchange(ends[end], -1));
  }
};

// A child must not inherit what this process has blocked or ignored.
class SpawnSetup {
 public:
  SpawnSetup(int text, int output) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // Onto itself: this one is not closed when the program begins.
    posix_spawn_file_actions_adddup2(&actions_, text, text);
    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigemptyset(&none);
    sigset_t interrupts = InterruptSet();
    sigaddset(&interrupts, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &interrupts);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;
  ~SpawnSetup() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  int Spawn(const std::string& program, const std::string& argument, pid_t& pid) {
    std::array<char*, 3> arguments{const_cast<char*>(program.c_str()),
                                   const_cast<char*>(argument.c_str()), nullptr};
    return posix_spawn(&pid, program.c_str(), &actions_, &attributes_, arguments.data(), environ);
  }

 private:
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

// Waits for output, and then for what comes right behind it: a program that writes line by line
// would otherwise wake this one at each of them. Only the end of the output ends the second wait,
// so that nothing is held back for longer than a reader could notice.
void AwaitOutput(int pipe) {
  constexpr int kGatherMilliseconds = 5;
  pollfd first{pipe, POLLIN, 0};
  if (poll(&first, 1, -1) != 1 || (first.revents & POLLHUP) != 0) return;
  pollfd end{pipe, 0, 0};
  (void)poll(&end, 1, kGatherMilliseconds);
}

// The number of the failure, 0 when there was none.
int ReadToEnd(int pipe, const std::function<void(std::string_view)>& on_output) {
  std::array<char, 16384> buffer;
  ssize_t count = 0;
  while (true) {
    // Behind a whole buffer the pipe may be full and the program wait.
    if (static_cast<std::size_t>(count) < buffer.size()) AwaitOutput(pipe);
    count = read(pipe, buffer.data(), buffer.size());
    if (count > 0) on_output({buffer.data(), static_cast<std::size_t>(count)});
    if (count == 0) return 0;
    if (count < 0 && errno != EINTR) return errno;
    if (count < 0) count = 0;
  }
}

// The number of the failure, 0 when there was none or the reader is gone, which its end will tell.
int WriteWhole(int pipe, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(pipe, text.data(), text.size());
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
    if (count < 0 && errno == EPIPE) return 0;
    if (count < 0 && errno != EINTR) return errno;
  }
  return 0;
}

ChildProcess::Exit ToExit(int status) {
  ChildProcess::Exit exit;
  if (WIFEXITED(status)) exit.code = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) {
    exit.code = 128 + WTERMSIG(status);
    for (const int number : kInterrupts) exit.interrupted |= WTERMSIG(status) == number;
  }
  return exit;
}

}  // namespace

struct ChildProcess::State {
  std::mutex mutex;
  pid_t pid = 0;  // of the running child, 0 when there is none
  int last = 0;   // of the child that was started last
  bool stopped = false;
  std::string program;
  Pipe text;
  Pipe output;

  // Unreaped until the lock is held, so that Stop never signals a number that is used again.
  int Reap() {
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    const std::lock_guard lock(mutex);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    pid = 0;
    return status;
  }
};

ChildProcess::ChildProcess() : state_(std::make_unique<State>()) {}
ChildProcess::~ChildProcess() = default;

void ChildProcess::Start(const std::filesystem::path& program) {
  state_->program = program.string();
  state_->text.Open();
  state_->output.Open();
  const std::string file = "/proc/self/fd/" + std::to_string(state_->text.ends[0]);
  SpawnSetup setup(state_->text.ends[0], state_->output.ends[1]);
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->stopped) return;
    pid_t pid = 0;
    const int failure = setup.Spawn(state_->program, file, pid);
    if (failure != 0) Fail(failure, "can't start " + state_->program);
    state_->pid = state_->last = pid;
  }
  state_->text.Close(0);
  state_->output.Close(1);
}

ChildProcess::Exit ChildProcess::Run(std::string_view text, const std::filesystem::path& /*file*/,
                                     const std::function<void(std::string_view)>& on_output,
                                     const std::function<void()>& meanwhile) {
  if (state_->pid == 0) return {.interrupted = true};
  const int untold = WriteWhole(state_->text.ends[1], text);
  if (untold != 0) kill(state_->pid, SIGKILL);
  state_->text.Close(1);
  FirstFailure failure;
  failure.Try(meanwhile);
  const int unread = ReadToEnd(state_->output.ends[0], [&](std::string_view piece) {
    failure.Try([&] { on_output(piece); });
  });
  state_->output.Close(0);
  const int status = state_->Reap();
  failure.Rethrow();
  if (untold != 0) Fail(untold, "can't tell " + state_->program + " what to do");
  if (unread != 0) Fail(unread, "can't read the output of " + state_->program);
  ChildProcess::Exit exit = ToExit(status);
  exit.process = state_->last;
  return exit;
}

void ChildProcess::EndWaiting() {
  if (state_->pid == 0) return;
  kill(state_->pid, SIGKILL);
  state_->Reap();
}

int ChildProcess::Stop() {
  using std::chrono::milliseconds;
  constexpr milliseconds kStep{5};
  constexpr milliseconds kPatience{2000};
  for (milliseconds waited{0};; waited += kStep) {
    {
      const std::lock_guard lock(state_->mutex);
      state_->stopped = true;
      if (state_->pid == 0) return state_->last;
      siginfo_t info{};
      if (waitid(P_PID, static_cast<id_t>(state_->pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
          info.si_pid != 0) {
        return state_->last;
      }
      if (waited == milliseconds{0}) kill(state_->pid, SIGTERM);
      if (waited == kPatience) kill(state_->pid, SIGKILL);
    }
    std::this_thread::sleep_for(kStep);
  }
}

}  // namespace host
