#include <signal.h>
#include <unistd.h>

#include <thread>
#include <utility>

#include "tavolite/system/interrupt.h"
#include "tavolite/system/interrupt_signals_posix.h"

namespace host {
namespace {

constexpr int kInterruptStatus = 130;

}  // namespace

void OnInterrupt(std::function<void()> cleanup) {
  const sigset_t set = InterruptSet();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  // A reader of our output that goes away must not leave files behind either.
  signal(SIGPIPE, SIG_IGN);
  std::thread([set, cleanup = std::move(cleanup)] {
    int number = 0;
    sigwait(&set, &number);
    cleanup();
    _exit(kInterruptStatus);
  }).detach();
}

}  // namespace host
