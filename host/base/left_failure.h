// A failure's reason that one library of a process leaves for another one: they share no objects,
// only the variables of the process's environment.
//
// One implementation per system: left_failure_posix.cpp, left_failure_windows.cpp.
#pragma once

#include <string>

namespace host {

// Replaces what was left before. Lost when there is no memory for it.
void LeaveFailure(const std::string& reason) noexcept;
// Empty when there is none.
std::string LeftFailure();

}  // namespace host
