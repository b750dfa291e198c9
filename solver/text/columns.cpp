#include "text/columns.h"

#include <utf8.h>

#include <algorithm>

namespace linfit {
namespace {

// Bytes of the first character of `text`; of what is not UTF-8, one.
std::size_t CharacterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  const std::string_view character = text.substr(0, length);
  const bool valid =
      character.size() == length && utf8::is_valid(character.begin(), character.end());
  return valid ? length : 1;
}

}  // namespace

std::string RightJustified(std::string_view text, std::size_t columns) {
  std::size_t used = 0;
  std::size_t bytes = 0;
  for (; bytes < text.size() && used < columns; ++used) {
    bytes += CharacterLength(text.substr(bytes));
  }
  std::string field(columns - used, ' ');
  return field.append(text.substr(0, bytes));
}

}  // namespace linfit
