#include <windows.h>

#include <utility>

#include "tavolite/system/interrupt.h"

namespace host {
namespace {

constexpr UINT kInterruptStatus = 130;

// The console's handler is a plain function: what it calls has to stand where it finds it.
std::function<void()>& InterruptCleanup() {
  static std::function<void()> cleanup;
  return cleanup;
}

BOOL WINAPI OnConsoleEvent(DWORD /*event*/) {
  InterruptCleanup()();
  TerminateProcess(GetCurrentProcess(), kInterruptStatus);
  return TRUE;
}

}  // namespace

void OnInterrupt(std::function<void()> cleanup) {
  InterruptCleanup() = std::move(cleanup);
  SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

}  // namespace host
