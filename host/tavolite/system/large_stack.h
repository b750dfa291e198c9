// Work that may nest very deeply.
//
// One implementation per system: large_stack_posix.cpp, large_stack_windows.cpp.
#pragma once

#include <cstddef>
#include <functional>

namespace host {

inline constexpr std::size_t kLargeStack = std::size_t{256} << 20;  // reserved; used as needed

// Runs `work` on a thread with a large stack and waits for its end; what it throws is thrown on.
// False when it has used up the stack. Its thread then stands still for good, with all that it has
// made and every lock that it holds: nothing of that may be touched, and the process must end
// within kGrace.
[[nodiscard]] bool RunOnLargeStack(const std::function<void()>& work);

// Where the process is still there after so many seconds, a lock of the thread is in its way, and
// it ends with kOverflowStatus.
inline constexpr unsigned kGrace = 10;
inline constexpr int kOverflowStatus = 2;

}  // namespace host
