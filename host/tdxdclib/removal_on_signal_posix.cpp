#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>

#include "tdxdclib/removal_on_signal.h"

namespace host {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// A signal handler sees nothing but static objects. Further files than these stay behind.
std::array<std::atomic<const char*>, 4> files;
static_assert(std::atomic<const char*>::is_always_lock_free);

void RemoveAndEnd(int number) {
  for (std::atomic<const char*>& file : files) {
    if (const char* name = file.load(); name != nullptr) unlink(name);
  }
  signal(number, SIG_DFL);
  raise(number);  // comes when this function has ended
}

// Sets `to` where the signal has `from`.
void Replace(void (*from)(int), void (*to)(int)) {
  for (const int number : kSignals) {
    struct sigaction now {};
    sigaction(number, nullptr, &now);
    if ((now.sa_flags & SA_SIGINFO) != 0 || now.sa_handler != from) continue;
    now.sa_handler = to;
    sigaction(number, &now, nullptr);
  }
}

}  // namespace

RemovalOnSignal::RemovalOnSignal(const std::filesystem::path& file)
    : file_(std::filesystem::absolute(file)) {
  for (std::atomic<const char*>& place : files) {
    const char* none = nullptr;
    if (place.compare_exchange_strong(none, file_.c_str())) break;
  }
  Replace(SIG_DFL, RemoveAndEnd);
}

RemovalOnSignal::~RemovalOnSignal() {
  bool others = false;
  for (std::atomic<const char*>& place : files) {
    const char* own = file_.c_str();
    place.compare_exchange_strong(own, nullptr);
    others = others || place.load() != nullptr;
  }
  if (!others) Replace(RemoveAndEnd, SIG_DFL);
}

}  // namespace host
