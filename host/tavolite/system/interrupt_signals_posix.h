// The signals by which users and systems ask a program to end.
#pragma once

#include <signal.h>

#include <array>

namespace host {

inline constexpr std::array kInterrupts{SIGINT, SIGTERM, SIGHUP};

// As `nohup` and a shell's "&" want it.
inline bool IsIgnored(int number) {
  struct sigaction action {};
  return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// Those that are not ignored.
inline sigset_t InterruptSet() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : kInterrupts) {
    if (!IsIgnored(number)) sigaddset(&set, number);
  }
  return set;
}

}  // namespace host
