#include "base/excerpt.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <ostream>

#include "base/text.h"

namespace host {

namespace {

bool Steers(std::uint32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x2028 && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

// Gives `put` the text piece by piece, each a character or what stands for one, until it returns
// false.
template <class Put>
void ForPieces(std::string_view text, std::string_view keep, Put put) {
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
    const std::uint32_t code = length == 0 ? static_cast<unsigned char>(text.front())
                                           : utf8::unchecked::peek_next(text.begin());
    text.remove_prefix(character.size());
    std::string_view piece = character;
    std::array<char, 8> escape{'\\', 'x', '0'};
    if (length == 0 || (Steers(code) && keep.find(character) == std::string_view::npos)) {
      if (code > 0xFF) escape[1] = 'u';
      char* const digits = escape.data() + (code < 0x10 ? 3 : 2);
      const char* const end = std::to_chars(digits, escape.data() + escape.size(), code, 16).ptr;
      piece = {escape.data(), end};
    }
    if (!put(piece)) return;
  }
}

}  // namespace

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string Printable(std::string_view text, std::string_view keep) {
  // Mostly there is nothing to do.
  if (std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 0x7F; })) {
    return std::string(text);
  }
  std::string printable;
  ForPieces(text, keep, [&](std::string_view piece) {
    printable += piece;
    return true;
  });
  return printable;
}

void WritePrintable(std::ostream& out, std::string_view text, std::string_view keep) {
  ForPieces(text, keep, [&](std::string_view piece) {
    out << piece;
    return true;
  });
}

std::string Excerpt(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  std::string excerpt;
  ForPieces(text, {}, [&](std::string_view piece) {
    const bool fits = excerpt.size() + piece.size() <= kLongest;
    excerpt += fits ? piece : "...";
    return fits;
  });
  return excerpt;
}

}  // namespace host
