#include "tavolite/show/show_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace host {

namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Characters of UTF-8 text; each is taken to be one column wide.
std::size_t DisplayWidth(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return !IsContinuation(c); }));
}

std::string Printable(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return text;
}

// Bytes of the UTF-8 character at the start of `text`; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  const std::string_view rest = text.substr(1, length - 1);
  if (!std::ranges::all_of(rest, IsContinuation)) return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool surrogate = lead == 0xED && second >= 0xA0;
  const bool too_large = lead == 0xF4 && second >= 0x90;
  return overlong || surrogate || too_large ? 0 : length;
}

void AppendEscaped(char c, std::string& text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(c);
  if (c == '"' || c == '\\') {
    text += '\\';
    text += c;
  } else if (code < 0x20 || code == 0x7F) {
    text += "\\u00";
    text += kDigits[code >> 4U];
    text += kDigits[code & 15U];
  } else {
    text += c;
  }
}

template <class... Format>
std::string Number(double value, Format... format) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0.0 ? "Inf" : "-Inf";
  std::array<char, 32> digits;
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, format...).ptr;
  return {digits.data(), end};
}

}  // namespace

std::string NumberText(double value) {
  return Number(value);
}

std::string RoundedText(double value) {
  return Number(value, std::chars_format::general, 7);
}

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string field(1, '"');
  for (const char c : text) field.append(c == '"' ? 2 : 1, c);
  return field += '"';
}

std::string JsonString(std::string_view text) {
  std::string quoted(1, '"');
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 1) {
      AppendEscaped(text[0], quoted);
    } else {
      quoted += length == 0 ? kReplacementCharacter : text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return quoted += '"';
}

std::string JsonNumber(double value) {
  if (std::isnan(value)) return "null";
  if (std::isinf(value)) return value > 0.0 ? "\"Infinity\"" : "\"-Infinity\"";
  return NumberText(value);
}

void AlignedTable::AddColumn(std::string head, Side side) {
  head = Printable(std::move(head));
  const std::size_t width = DisplayWidth(head);
  columns_.push_back({std::move(head), side, width});
}

void AlignedTable::AddRow(std::vector<std::string> cells) {
  for (std::size_t k = 0; k < cells.size(); ++k) {
    cells[k] = Printable(std::move(cells[k]));
    columns_[k].width = std::max(columns_[k].width, DisplayWidth(cells[k]));
  }
  rows_.push_back(std::move(cells));
}

std::size_t AlignedTable::Width() const {
  std::size_t width = 0;
  for (const Column& column : columns_) width += column.width + 2;
  return columns_.empty() ? 0 : width - 2;
}

void AlignedTable::PrintLine(const std::vector<std::string>& cells, std::string& text) const {
  std::string line;
  for (std::size_t k = 0; k < cells.size(); ++k) {
    const std::size_t blanks = columns_[k].width - DisplayWidth(cells[k]);
    if (k > 0) line += "  ";
    if (columns_[k].side == Side::kRight) line.append(blanks, ' ');
    line += cells[k];
    if (columns_[k].side == Side::kLeft) line.append(blanks, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  text += line += '\n';
}

void AlignedTable::Print(std::string& text) const {
  std::vector<std::string> heads;
  for (const Column& column : columns_) heads.push_back(column.head);
  if (!std::ranges::all_of(heads, &std::string::empty)) PrintLine(heads, text);
  for (const std::vector<std::string>& row : rows_) PrintLine(row, text);
}

}  // namespace host
