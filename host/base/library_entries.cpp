#include "base/library_entries.h"

#include <exception>
#include <string>

namespace host {
namespace {

// The compiler's run time keeps the state of exceptions in memory of the thread, asks for it at the
// first exception, and ends the process there and then when it gets none. So the main thread's is
// asked for when the library is loaded.
[[maybe_unused]] const std::exception_ptr asked_for_at_load = std::current_exception();

}  // namespace

void PutMessage(std::string_view text, char* message) {
  constexpr std::size_t kMessageBuffer = 256;
  if (message == nullptr) {
    return;
  }
  const std::size_t length = std::min(text.size(), kMessageBuffer - 1);
  std::copy_n(text.data(), length, message);
  message[length] = '\0';
}

int CheckSignature(std::span<const Signature> offered, const char* name, int arguments,
                   const int* codes, char* message) {
  return Guarded(0, [&] {
    const auto known = std::ranges::find(offered, std::string_view(name), &Signature::name);
    if (known == offered.end()) {
      PutMessage(std::string("there is no function ") + name, message);
      return 0;
    }
    const std::span<const int> own(known->codes.data(), known->count);
    if (arguments < 0 ||
        !std::ranges::equal(own, std::span(codes, static_cast<std::size_t>(arguments) + 1))) {
      PutMessage(std::string("the signature of ") + name + " differs", message);
      return 0;
    }
    return 1;
  });
}

int CheckVersion(std::string_view library, int offered, int asked, char* message,
                 int* compatibility) {
  return Guarded(0, [&] {
    const bool accepted = asked == offered;
    if (compatibility != nullptr) {
      *compatibility = accepted ? 1 : 0;
    }
    if (!accepted) {
      PutMessage(std::string(library) + ": the program asks for interface version " +
                     std::to_string(asked) + ", the library offers " + std::to_string(offered),
                 message);
    }
    return accepted ? 1 : 0;
  });
}

}  // namespace host
