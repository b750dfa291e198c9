#include <cstdlib>

#include "base/left_failure.h"

namespace host {

void LeaveFailure(const std::string& reason) noexcept {
  setenv("LINFIT_FAILURE", reason.c_str(), 1);
}

std::string LeftFailure() {
  const char* reason = std::getenv("LINFIT_FAILURE");
  return reason == nullptr ? "" : reason;
}

}  // namespace host
