#include <windows.h>

#include "base/left_failure.h"

namespace host {

void LeaveFailure(const std::string& reason) noexcept {
  SetEnvironmentVariableA("LINFIT_FAILURE", reason.c_str());
}

std::string LeftFailure() {
  constexpr DWORD kMost = 1000;
  std::string reason(kMost, '\0');
  const DWORD size = GetEnvironmentVariableA("LINFIT_FAILURE", reason.data(), kMost);
  reason.resize(size < kMost ? size : 0);  // otherwise it had no room
  return reason;
}

}  // namespace host
