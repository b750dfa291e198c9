#include "tavolite/system/standard_output.h"

#include <cerrno>
#include <cstdio>
#include <new>

#include "base/excerpt.h"
#include "base/text.h"
#include "tavolite/system/terminal.h"

namespace host {
namespace {

// How many bytes at the end of `text` wait for what follows: the begin of a character, and a
// carriage return, which counts for nothing before a line feed.
std::size_t UnfinishedLength(std::string_view text) {
  if (text.ends_with('\r')) return 1;
  std::size_t length = 0;
  while (length < 3 && length < text.size() && IsUtf8Continuation(text[text.size() - 1 - length])) {
    ++length;
  }
  if (length == text.size()) return 0;
  const auto lead = static_cast<unsigned char>(text[text.size() - 1 - length]);
  const std::size_t whole = lead >= 0xF0U ? 4 : lead >= 0xE0U ? 3 : lead >= 0xC0U ? 2 : 1;
  return length + 1 < whole ? length + 1 : 0;
}

}  // namespace

StandardOutput::StandardOutput() : StandardOutput(StandardOutputIsTerminal()) {}

int StandardOutput::End() {
  if (!held_.empty()) Write(Printable(held_));
  sync();
  return error_;
}

StandardOutput::int_type StandardOutput::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char byte = traits_type::to_char_type(c);
  return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
}

std::streamsize StandardOutput::xsputn(const char* text, std::streamsize count) {
  const std::string_view all(text, static_cast<std::size_t>(count));
  return (to_terminal_ ? WriteToTerminal(all) : Write(all)) ? count : 0;
}

bool StandardOutput::Write(std::string_view text) {
  errno = 0;
  const bool whole = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!whole && error_ == 0) error_ = errno != 0 ? errno : EIO;
  return whole;
}

bool StandardOutput::WriteToTerminal(std::string_view text) {
  try {
    held_ += text;
    const std::size_t taken = held_.size() - UnfinishedLength(held_);
    std::string shown;
    for (std::size_t i = 0; i < taken; ++i) {
      if (held_[i] != '\r' || i + 1 == held_.size() || held_[i + 1] != '\n') shown += held_[i];
    }
    held_.erase(0, taken);
    return Write(Printable(shown, "\n\t"));
  } catch (const std::bad_alloc&) {
    if (error_ == 0) error_ = ENOMEM;
    return false;
  }
}

int StandardOutput::sync() {
  errno = 0;
  const bool failed = std::fflush(stdout) != 0;
  if (failed && error_ == 0) error_ = errno != 0 ? errno : EIO;
  return failed ? -1 : 0;
}

}  // namespace host
