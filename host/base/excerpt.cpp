#include "base/excerpt.h"

#include "base/text.h"

namespace host {

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
