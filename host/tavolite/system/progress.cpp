#include "tavolite/system/progress.h"

#include <cstdio>

#include "base/excerpt.h"
#include "tavolite/system/terminal.h"

namespace host {

namespace {

constexpr std::chrono::seconds kPatience{2};
constexpr std::chrono::milliseconds kPause{200};

void Print(const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
}

}  // namespace

Progress::Progress(const std::string& text, bool wanted)
    : text_(Printable(text)),
      wanted_(wanted && StandardErrorIsTerminal()),
      next_(Clock::now() + kPatience) {}

Progress::~Progress() {
  if (shown_ > 0) {
    Print('\r' + std::string(shown_, ' ') + '\r');
  }
}

void Progress::Update(double fraction) {
  if (!wanted_) {
    return;
  }
  const Clock::time_point now = Clock::now();
  if (now < next_) {
    return;
  }
  next_ = now + kPause;
  std::string line = text_;
  if (fraction >= 0.0) {
    line += ": " + std::to_string(static_cast<int>(100.0 * fraction)) + "%";
  }
  Print('\r' + line);
  shown_ = line.size();
}

}  // namespace host
