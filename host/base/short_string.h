// Short strings: a length byte, then 0 to 255 characters, in a buffer of 256 bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace host {

inline constexpr std::size_t kShortStringBuffer = 256;
inline constexpr std::size_t kShortStringLength = 255;

inline std::string_view ShortStringText(const char* buffer) {
  return {buffer + 1, static_cast<unsigned char>(buffer[0])};
}

// Longer text is cut, between two UTF-8 characters.
inline void ToShortString(std::string_view text, char* buffer) {
  std::size_t length = std::min(text.size(), kShortStringLength);
  if (length < text.size()) {
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  }
  buffer[0] = static_cast<char>(static_cast<unsigned char>(length));
  std::copy_n(text.data(), length, buffer + 1);
}

}  // namespace host
