#include "base/excerpt.h"

namespace host {

std::size_t Utf8Length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || length > text.size()) {
    return 0;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) {
      return 0;
    }
  }
  if ((lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xED && byte(1) > 0x9F) ||
      (lead == 0xF0 && byte(1) < 0x90) || (lead == 0xF4 && byte(1) > 0x8F)) {
    return 0;
  }
  return length;
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string Excerpt(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  std::string excerpt;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = Utf8Length(text.substr(i));
    if (excerpt.size() + length > kLongest) {
      return excerpt + "...";
    }
    if (length == 0 || IsControl(text[i])) {
      excerpt += '?';
      ++i;
    } else {
      excerpt += text.substr(i, length);
      i += length;
    }
  }
  return excerpt;
}

}  // namespace host
