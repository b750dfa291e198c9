#include "tavolite/system/standard_output.h"

#include <cerrno>
#include <cstdio>

namespace host {

int StandardOutput::End() {
  sync();
  return error_;
}

StandardOutput::int_type StandardOutput::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char byte = traits_type::to_char_type(c);
  return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
}

std::streamsize StandardOutput::xsputn(const char* text, std::streamsize count) {
  const auto size = static_cast<std::size_t>(count);
  errno = 0;
  const std::size_t written = std::fwrite(text, 1, size, stdout);
  if (written < size && error_ == 0) error_ = errno != 0 ? errno : EIO;
  return static_cast<std::streamsize>(written);
}

int StandardOutput::sync() {
  errno = 0;
  const bool failed = std::fflush(stdout) != 0;
  if (failed && error_ == 0) error_ = errno != 0 ? errno : EIO;
  return failed ? -1 : 0;
}

}  // namespace host
