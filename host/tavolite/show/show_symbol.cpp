#include "tavolite/show/show_symbol.h"

#include <algorithm>
#include <span>
#include <vector>

#include "base/excerpt.h"

namespace host {

namespace {

// Labels in the notation of the model, "a.b".
std::string JoinedKeys(std::span<const std::string> keys) {
  std::string joined;
  for (std::size_t k = 0; k < keys.size(); ++k) {
    if (k > 0) joined += '.';
    joined += keys[k];
  }
  return joined;
}

std::string DimensionName(int k) {
  return "dim" + std::to_string(k + 1);
}

// The number of columns when the records are a whole matrix, row by row: the first half of the keys
// names the row and the second half the column. 0 when they aren't.
std::size_t MatrixColumns(const TdxRecords& records) {
  const std::size_t count = records.values.size();
  if (records.dimension == 0 || records.dimension % 2 != 0 || count == 0) return 0;
  const auto half = static_cast<std::size_t>(records.dimension) / 2;
  const auto row_keys = [&](std::size_t i) { return records.Keys(i).first(half); };
  const auto column_keys = [&](std::size_t i) { return records.Keys(i).last(half); };
  std::size_t columns = 1;
  while (columns < count && std::ranges::equal(row_keys(columns), row_keys(0))) ++columns;
  if (count % columns != 0) return 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!std::ranges::equal(row_keys(i), row_keys(i - i % columns)) ||
        !std::ranges::equal(column_keys(i), column_keys(i % columns))) {
      return 0;
    }
  }
  return columns;
}

AlignedTable MatrixTable(const TdxRecords& records, std::size_t columns) {
  const auto half = static_cast<std::size_t>(records.dimension) / 2;
  AlignedTable table;
  table.AddColumn("", AlignedTable::Side::kLeft);
  for (std::size_t j = 0; j < columns; ++j) {
    table.AddColumn(JoinedKeys(records.Keys(j).last(half)), AlignedTable::Side::kRight);
  }
  for (std::size_t i = 0; i < records.values.size(); i += columns) {
    std::vector<std::string> cells{JoinedKeys(records.Keys(i).first(half))};
    for (std::size_t j = 0; j < columns; ++j) cells.push_back(NumberText(records.values[i + j]));
    table.AddRow(std::move(cells));
  }
  return table;
}

AlignedTable ListTable(const TdxRecords& records) {
  AlignedTable table;
  for (int k = 0; k < records.dimension; ++k) {
    table.AddColumn(DimensionName(k), AlignedTable::Side::kLeft);
  }
  table.AddColumn("value", AlignedTable::Side::kRight);
  for (std::size_t i = 0; i < records.values.size(); ++i) {
    const std::span<const std::string> keys = records.Keys(i);
    std::vector<std::string> cells(keys.begin(), keys.end());
    cells.push_back(NumberText(records.values[i]));
    table.AddRow(std::move(cells));
  }
  return table;
}

}  // namespace

void PrintSymbolTable(const TdxSymbolInfo& symbol, const TdxRecords& records, bool whole,
                      std::size_t width, std::string& text) {
  text += Printable(symbol.name + ": " + symbol.text) + "\n\n";
  // A matrix wider than this can't fit: a column takes three characters at least.
  const std::size_t columns = whole ? MatrixColumns(records) : 0;
  if (columns > 1 && columns <= width / 3) {
    const AlignedTable matrix = MatrixTable(records, columns);
    if (matrix.Width() <= width) {
      matrix.Print(text);
      return;
    }
  }
  ListTable(records).Print(text);
  if (!whole) {
    text += '(';
    text += std::to_string(records.values.size()) + " of " + std::to_string(symbol.records) +
            " records)\n";
  }
}

void PrintSymbolCsv(const TdxRecords& records, CsvCells cells, std::string& text) {
  for (int k = 0; k < records.dimension; ++k) text += DimensionName(k) + ',';
  text += "value\n";
  for (std::size_t i = 0; i < records.values.size(); ++i) {
    for (const std::string& key : records.Keys(i)) text += CsvField(key, cells) += ',';
    text += NumberText(records.values[i]) += '\n';
  }
}

void PrintSymbolJson(const TdxSymbolInfo& symbol, const TdxRecords& records, std::string& text) {
  text += "{\"name\":" + JsonString(symbol.name) + ",\"text\":" + JsonString(symbol.text) +
          ",\"dimension\":" + std::to_string(symbol.dimension) + ",\"records\":[";
  for (std::size_t i = 0; i < records.values.size(); ++i) {
    text += i == 0 ? "\n" : ",\n";
    text += "{\"keys\":" + JsonStrings(records.Keys(i)) +
            ",\"value\":" + JsonNumber(records.values[i]) + "}";
  }
  text += "\n]}\n";
}

}  // namespace host
