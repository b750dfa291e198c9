// Ctrl-C and its like: on POSIX systems SIGINT, SIGTERM and SIGHUP, unless the process was started
// with them ignored.
//
// One implementation per system: interrupt_posix.cpp, interrupt_windows.cpp.
#pragma once

#include <functional>
#include <mutex>

namespace host {

inline constexpr int kInterruptedStatus = 130;

// From here on, an interrupt ends the process at once, with kInterruptedStatus.
void EndOnInterrupt();

// From here on, an interrupt first runs `cleanup` in a thread of its own. To be called once, before
// any other thread starts.
void OnInterrupt(std::function<void()> cleanup);

// Makes an interrupt wait for the end of a scope. When one has begun, the scope is never entered:
// the process is about to end.
class WithoutInterrupt {
 public:
  WithoutInterrupt();
  WithoutInterrupt(const WithoutInterrupt&) = delete;
  WithoutInterrupt& operator=(const WithoutInterrupt&) = delete;

 private:
  std::lock_guard<std::mutex> lock_;
};

}  // namespace host
