#include <windows.h>

#include <utility>

#include "tavolite/system/interrupt.h"
#include "tavolite/system/interrupt_lock.h"

namespace host {
namespace {

// The console's handler is a plain function: what it calls has to stand where it finds it.
std::function<void()>& InterruptCleanup() {
  static std::function<void()> cleanup;
  return cleanup;
}

BOOL WINAPI OnConsoleEvent(DWORD /*event*/) {
  InterruptLock().lock();
  if (InterruptCleanup()) InterruptCleanup()();
  TerminateProcess(GetCurrentProcess(), kInterruptedStatus);
  return TRUE;
}

}  // namespace

void EndOnInterrupt() {
  SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

void OnInterrupt(std::function<void()> cleanup) {
  const WithoutInterrupt now;
  InterruptCleanup() = std::move(cleanup);
}

}  // namespace host
