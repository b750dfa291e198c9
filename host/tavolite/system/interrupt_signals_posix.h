// The signals by which users and systems ask a program to end.
#pragma once

#include <signal.h>

#include <array>

namespace host {

inline constexpr std::array kInterrupts{SIGINT, SIGTERM, SIGHUP};

inline sigset_t InterruptSet() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : kInterrupts) sigaddset(&set, number);
  return set;
}

}  // namespace host
