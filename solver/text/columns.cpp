#include "text/columns.h"

namespace linfit {

std::string RightJustified(std::string_view text, std::size_t columns) {
  const auto starts_character = [&](std::size_t i) { return (text[i] & 0xC0) != 0x80; };
  std::size_t used = 0;
  std::size_t bytes = 0;
  while (bytes < text.size() && (used < columns || !starts_character(bytes))) {
    if (starts_character(bytes)) ++used;
    ++bytes;
  }
  std::string field(columns - used, ' ');
  return field.append(text.substr(0, bytes));
}

}  // namespace linfit
