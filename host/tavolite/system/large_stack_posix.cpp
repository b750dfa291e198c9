#include <pthread.h>
#include <semaphore.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <exception>

#include "tavolite/system/large_stack.h"

namespace host {
namespace {

constexpr std::size_t kSmallestStack = std::size_t{1} << 20;
// No function's variables reach over it.
constexpr std::size_t kGuard = std::size_t{1} << 20;
constexpr std::size_t kAlternateStack = std::size_t{64} << 10;

struct Task {
  const std::function<void()>& work;
  std::exception_ptr failure{};
  bool overflowed = false;
  sem_t ended{};
};

// Of the thread with the large stack, for its signal handler.
struct Watch {
  Task* task = nullptr;
  std::uintptr_t lowest = 0;  // address of its stack
};
thread_local Watch watch;

// Nothing but calls that are safe in a handler: the thread may have been anywhere.
void OnFault(int number, siginfo_t* info, void* /*context*/) {
  const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
  if (watch.task == nullptr || address >= watch.lowest || address < watch.lowest - kGuard) {
    signal(number, SIG_DFL);  // the instruction is tried again, and ends the process
    return;
  }
  watch.task->overflowed = true;
  sem_post(&watch.task->ended);
  timespec left{kGrace, 0};
  while (nanosleep(&left, &left) != 0) {
  }
  _exit(kOverflowStatus);
}

void CatchFaults(std::array<char, kAlternateStack>& stack) {
  stack_t alternate{};
  alternate.ss_sp = stack.data();
  alternate.ss_size = stack.size();
  sigaltstack(&alternate, nullptr);
  struct sigaction action {};
  action.sa_sigaction = &OnFault;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigaction(SIGSEGV, &action, nullptr);
  sigaction(SIGBUS, &action, nullptr);
}

void StopCatching() {
  watch.task = nullptr;
  stack_t none{};
  none.ss_flags = SS_DISABLE;
  sigaltstack(&none, nullptr);
}

std::uintptr_t LowestStackAddress() {
  pthread_attr_t attributes;
  void* lowest = nullptr;
  std::size_t size = 0;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return 0;
  pthread_attr_getstack(&attributes, &lowest, &size);
  pthread_attr_destroy(&attributes);
  return reinterpret_cast<std::uintptr_t>(lowest);
}

void* RunTask(void* argument) {
  Task& task = *static_cast<Task*>(argument);
  std::array<char, kAlternateStack> alternate;
  watch = {&task, LowestStackAddress()};
  CatchFaults(alternate);
  try {
    task.work();
  } catch (...) {
    task.failure = std::current_exception();
  }
  StopCatching();
  sem_post(&task.ended);
  return nullptr;
}

// Where memory is short, a smaller stack must do.
bool StartThread(Task& task, pthread_t& thread) {
  for (std::size_t size = kLargeStack; size >= kSmallestStack; size /= 2) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size);
    pthread_attr_setguardsize(&attributes, kGuard);
    const int failure = pthread_create(&thread, &attributes, &RunTask, &task);
    pthread_attr_destroy(&attributes);
    if (failure == 0) return true;
  }
  return false;
}

}  // namespace

bool RunOnLargeStack(const std::function<void()>& work) {
  Task task{work};
  sem_init(&task.ended, 0, 0);
  pthread_t thread{};
  if (!StartThread(task, thread)) {
    work();
    return true;
  }
  while (sem_wait(&task.ended) != 0 && errno == EINTR) {
  }
  if (task.overflowed) return false;
  pthread_join(thread, nullptr);
  sem_destroy(&task.ended);
  if (task.failure) std::rethrow_exception(task.failure);
  return true;
}

}  // namespace host
