// Texts without their trailing blanks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace linfit {

inline std::string_view Trimmed(std::string_view text) {
  std::size_t length = text.size();
  // A library's field is mostly blanks, and a run has millions of them: eight at a time.
  constexpr std::uint64_t kBlanks = 0x2020202020202020;
  for (std::uint64_t word = 0; length >= sizeof word; length -= sizeof word) {
    std::memcpy(&word, text.data() + length - sizeof word, sizeof word);
    if (word != kBlanks) break;
  }
  while (length > 0 && text[length - 1] == ' ') --length;
  return text.substr(0, length);
}

}  // namespace linfit
