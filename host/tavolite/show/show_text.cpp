#include "tavolite/show/show_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "base/excerpt.h"
#include "base/text.h"
#include "tavolite/report/fit_data.h"

namespace host {

namespace {

// Characters of UTF-8 text; each is taken to be one column wide.
std::size_t DisplayWidth(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return !IsUtf8Continuation(c); }));
}

bool IsNumber(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto [rest, code] = std::from_chars(text.data(), end, value);
  return code == std::errc() && rest == end;
}

// How a formula begins in a spreadsheet, in full width as well.
bool LooksLikeFormula(std::string_view text) {
  constexpr std::array<std::string_view, 10> kStarts{"=",  "+",      "-",      "@",      "\t",
                                                     "\r", "\uFF1D", "\uFF0B", "\uFF0D", "\uFF20"};
  if (text.empty() || std::isalnum(static_cast<unsigned char>(text.front())) != 0) return false;
  const bool starts = std::ranges::any_of(
      kStarts, [text](std::string_view start) { return text.starts_with(start); });
  return starts && !IsNumber(text);
}

}  // namespace

std::string NumberText(double value) {
  std::array<char, kNumberBuffer> buffer;
  return std::string(FormatNumber(value, "Inf", 0, buffer));
}

std::string RoundedText(double value) {
  std::array<char, kNumberBuffer> buffer;
  return std::string(FormatNumber(value, "Inf", 7, buffer));
}

std::string ProbabilityCell(double p, std::string (*number)(double)) {
  return p >= 0.0 && p < kSmallestProbability ? "<" + number(kSmallestProbability) : number(p);
}

std::string CsvField(std::string_view text, CsvCells cells) {
  std::string field(cells == CsvCells::kGuarded && LooksLikeFormula(text) ? "'" : "");
  field += text;
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return field;
  std::string quoted(1, '"');
  for (const char c : field) quoted.append(c == '"' ? 2 : 1, c);
  return quoted += '"';
}

std::string JsonString(std::string_view text) {
  const bool is_plain = std::ranges::all_of(
      text, [](char c) { return c >= ' ' && c < 0x7F && c != '"' && c != '\\'; });
  if (is_plain) return std::string(1, '"').append(text).append(1, '"');
  constexpr int kOneLine = -1;
  return nlohmann::json(text).dump(kOneLine, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string JsonStrings(std::span<const std::string> texts) {
  std::string array(1, '[');
  for (const std::string& text : texts) {
    if (array.size() > 1) array += ',';
    array += JsonString(text);
  }
  return array += ']';
}

std::string JsonNumber(double value) {
  if (std::isnan(value)) return "null";
  if (std::isinf(value)) return value > 0.0 ? "\"Infinity\"" : "\"-Infinity\"";
  return NumberText(value);
}

std::string JsonProbability(double p) {
  const std::string text = ProbabilityCell(p, NumberText);
  return text.starts_with('<') ? JsonString(text) : JsonNumber(p);
}

void AlignedTable::AddColumn(std::string head, Side side) {
  head = Printable(head);
  const std::size_t width = DisplayWidth(head);
  columns_.push_back({std::move(head), side, width});
}

void AlignedTable::AddRow(std::vector<std::string> cells) {
  for (std::size_t k = 0; k < cells.size(); ++k) {
    cells[k] = Printable(cells[k]);
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
  text.append(StrippedEnd(line)).append("\n");
}

void AlignedTable::Print(std::string& text) const {
  std::vector<std::string> heads;
  for (const Column& column : columns_) heads.push_back(column.head);
  if (!std::ranges::all_of(heads, &std::string::empty)) PrintLine(heads, text);
  for (const std::vector<std::string>& row : rows_) PrintLine(row, text);
}

}  // namespace host
