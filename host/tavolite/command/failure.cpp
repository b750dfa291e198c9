#include "tavolite/command/failure.h"

#include <new>
#include <ostream>
#include <system_error>

#include "base/excerpt.h"

namespace host {

const char* FailureText(const std::exception& failure) {
  if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) return "not enough memory";
  const auto* system = dynamic_cast<const std::system_error*>(&failure);
  if (system != nullptr && system->code() == std::errc::resource_unavailable_try_again) {
    return "no further process or thread can be started: the system's limit of them is reached "
           "(ulimit -u shows it)";
  }
  return failure.what();
}

void PrintFailure(const std::exception& failure, std::ostream& err) {
  err << "tavolite: ";
  WritePrintable(err, FailureText(failure));
  err << '\n';
}

}  // namespace host
