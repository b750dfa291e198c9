// Texts of fixed width.
//
//   fixed text    a fixed number of characters, padded with blanks; the length travels beside it
//   short string  a length byte (0 to 255), then that many characters, in a buffer of 256 bytes
//   long text     at most 511 characters and a terminating zero, in a buffer of 512 bytes
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include "text/trimmed.h"

namespace linfit {

inline constexpr std::size_t kShortStringBuffer = 256;
inline constexpr std::size_t kShortStringLength = 255;
inline constexpr std::size_t kLongTextBuffer = 512;
inline constexpr std::size_t kLongTextLength = 511;

template <std::size_t n>
std::string_view Trimmed(const std::array<char, n>& text) {
  return Trimmed(std::string_view(text.data(), n));
}

// Fills `field` with `text`, cut to its width or followed by blanks.
inline void PadCopy(std::string_view text, std::span<char> field) {
  const std::size_t kept = std::min(text.size(), field.size());
  if (kept > 0) std::memcpy(field.data(), text.data(), kept);
  std::fill_n(field.data() + kept, field.size() - kept, ' ');
}

// Stores `text`, cut to 255 characters, as a short string in the 256 bytes from `buffer` on. Bytes
// behind the text stay as they are.
inline void ToShortString(std::string_view text, char* buffer) {
  const std::string_view kept = text.substr(0, kShortStringLength);
  buffer[0] = static_cast<char>(static_cast<unsigned char>(kept.size()));
  std::copy(kept.begin(), kept.end(), buffer + 1);
}
inline std::string_view FromShortString(const char* buffer) {
  return {buffer + 1, static_cast<unsigned char>(buffer[0])};
}

// Stores `text`, cut to 511 characters, with a terminating zero in the 512 bytes from `buffer` on.
inline void ToLongText(std::string_view text, char* buffer) {
  const std::string_view kept = text.substr(0, kLongTextLength);
  *std::copy(kept.begin(), kept.end(), buffer) = '\0';
}

}  // namespace linfit
