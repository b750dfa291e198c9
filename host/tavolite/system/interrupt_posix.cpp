#include <signal.h>
#include <unistd.h>

#include <thread>
#include <utility>

#include "tavolite/system/interrupt.h"
#include "tavolite/system/interrupt_lock.h"
#include "tavolite/system/interrupt_signals_posix.h"

namespace host {

void EndOnInterrupt() {
  for (const int number : kInterrupts) {
    if (IsIgnored(number)) continue;
    signal(number, [](int /*number*/) { _exit(kInterruptedStatus); });
  }
}

void OnInterrupt(std::function<void()> cleanup) {
  const sigset_t set = InterruptSet();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  // A reader of our output that goes away must not leave files behind either.
  signal(SIGPIPE, SIG_IGN);
  std::thread([set, cleanup = std::move(cleanup)] {
    int number = 0;
    sigwait(&set, &number);
    InterruptLock().lock();
    cleanup();
    _exit(kInterruptedStatus);
  }).detach();
}

}  // namespace host
