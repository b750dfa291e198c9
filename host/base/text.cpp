#include "base/text.h"

#include <utf8.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <vector>

namespace host {

namespace {

// Moves the letters from `first` to `first` + 25 by `distance`.
std::string Moved(std::string_view text, char first, int distance) {
  std::string moved(text);
  for (char& c : moved) {
    if (c >= first && c <= first + 25) c = static_cast<char>(c + distance);
  }
  return moved;
}

}  // namespace

std::size_t Utf8Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return 1;
  // The first byte begins with as many ones as the character has bytes.
  const auto length = static_cast<std::size_t>(std::countl_one(lead));
  if (length > text.size()) return 0;
  return utf8::is_valid(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length)) ? length
                                                                                          : 0;
}

std::string_view StrippedEnd(std::string_view text, std::string_view blanks) {
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::string_view Stripped(std::string_view text, std::string_view blanks) {
  text = StrippedEnd(text, blanks);
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string LowerCase(std::string_view text) {
  return Moved(text, 'A', 'a' - 'A');
}

std::string UpperCase(std::string_view text) {
  return Moved(text, 'a', 'A' - 'a');
}

std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = diagonal + (a[i - 1] == b[j - 1] ? 0U : 1U);
      diagonal = row[j];
      row[j] = std::min({change, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row[b.size()];
}

std::string Counted(std::size_t count, std::string_view noun) {
  return std::to_string(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

std::string_view FormatNumber(double value, std::string_view infinity, int digits,
                              std::span<char, kNumberBuffer> buffer) {
  if (std::isnan(value)) return "NaN";
  char* end = buffer.data();
  if (std::isinf(value)) {
    if (value < 0.0) *end++ = '-';
    end = std::ranges::copy(infinity, end).out;
  } else if (digits == 0) {
    end = std::to_chars(end, end + buffer.size(), value).ptr;
  } else {
    end = std::to_chars(end, end + buffer.size(), value, std::chars_format::general, digits).ptr;
  }
  return {buffer.data(), end};
}

}  // namespace host
