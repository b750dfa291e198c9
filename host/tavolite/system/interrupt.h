// Ctrl-C and its like.
//
// One implementation per system: interrupt_posix.cpp, interrupt_windows.cpp.
#pragma once

#include <functional>

namespace host {

// From here on, Ctrl-C and its like run `cleanup` in a thread of its own, then end the process with
// exit status 130. To be called once, before any other thread starts.
void OnInterrupt(std::function<void()> cleanup);

}  // namespace host
