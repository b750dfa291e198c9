#include <windows.h>
// After windows.h, which it needs.
#include <process.h>

#include <exception>

#include "tavolite/system/large_stack.h"
#include "tavolite/system/windows_support.h"

namespace host {
namespace {

constexpr ULONG kHandlerStack = 64U << 10;

struct Task {
  const std::function<void()>& work;
  std::exception_ptr failure{};
  DWORD thread = 0;
  HANDLE overflowed = nullptr;
};

// The exception handler is a plain function: what it needs has to stand where it finds it.
Task*& CurrentTask() {
  static Task* task = nullptr;
  return task;
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) {
  const Task* task = CurrentTask();
  if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_STACK_OVERFLOW || task == nullptr ||
      task->thread != GetCurrentThreadId()) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  SetEvent(task->overflowed);
  Sleep(kGrace * 1000);
  TerminateProcess(GetCurrentProcess(), kOverflowStatus);
  return EXCEPTION_CONTINUE_SEARCH;
}

unsigned __stdcall RunTask(void* argument) {
  Task& task = *static_cast<Task*>(argument);
  ULONG handler_stack = kHandlerStack;
  SetThreadStackGuarantee(&handler_stack);
  task.thread = GetCurrentThreadId();
  try {
    task.work();
  } catch (...) {
    task.failure = std::current_exception();
  }
  return 0;
}

}  // namespace

bool RunOnLargeStack(const std::function<void()>& work) {
  Task task{work};
  task.overflowed = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (task.overflowed == nullptr) FailWithLastError("event");
  CurrentTask() = &task;
  void* handler = AddVectoredExceptionHandler(1, &OnException);
  const auto thread = reinterpret_cast<HANDLE>(_beginthreadex(
      nullptr, kLargeStack, &RunTask, &task, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
  if (thread == nullptr) FailWithLastError("thread");
  const HANDLE ends[] = {thread, task.overflowed};
  const bool ended = WaitForMultipleObjects(2, ends, FALSE, INFINITE) == WAIT_OBJECT_0;
  if (!ended) return false;
  RemoveVectoredExceptionHandler(handler);
  CurrentTask() = nullptr;
  CloseHandle(thread);
  CloseHandle(task.overflowed);
  if (task.failure) std::rethrow_exception(task.failure);
  return true;
}

}  // namespace host
