#include <windows.h>

#include "base/left_failure.h"

namespace host {

void LeaveFailure(const std::string& reason) noexcept {
  SetEnvironmentVariableA("LINFIT_FAILURE", reason.c_str());
}

std::string LeftFailure() {
  std::string reason(1000, '\0');
  reason.resize(GetEnvironmentVariableA("LINFIT_FAILURE", reason.data(), 1000));
  return reason;
}

}  // namespace host
