// Numbers and texts as `tavolite show` prints them.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tavolite/command/options.h"

namespace host {

// The shortest digits that read back as the same double; Inf, -Inf and NaN, as R and pandas read
// them.
std::string NumberText(double value);
// Seven significant digits, for tables that are to be looked at.
std::string RoundedText(double value);

// A field of RFC 4180: in quotes when it holds a comma, a quote or a line break. Guarded, a text
// that a spreadsheet would run as a formula has an apostrophe in front.
std::string CsvField(std::string_view text, CsvCells cells);

// A probability in the form of `number`; "<1e-38" where it is too small to be told.
std::string ProbabilityCell(double p, std::string (*number)(double));

// A JSON string with its quotes. Bytes that aren't UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);
// A JSON array of such strings.
std::string JsonStrings(std::span<const std::string> texts);
// The digits of NumberText, which the library has no format for. JSON has numbers only for finite
// values: "Infinity" and "-Infinity" are strings, an undefined value is null.
std::string JsonNumber(double value);
// The same of a probability; the string "<1e-38" where it is too small to be told.
std::string JsonProbability(double p);

// Columns under each other, two blanks between them; texts stand left, numbers right.
class AlignedTable {
 public:
  enum class Side { kLeft, kRight };

  void AddColumn(std::string head, Side side);
  // As many cells as there are columns. They are printed as Printable has them, like the heads.
  void AddRow(std::vector<std::string> cells);
  [[nodiscard]] std::size_t Width() const;
  // A line of heads, unless all are empty, then one per row; each ends in "\n".
  void Print(std::string& text) const;

 private:
  struct Column {
    std::string head;
    Side side;
    std::size_t width;
  };
  void PrintLine(const std::vector<std::string>& cells, std::string& text) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace host
