#include "tavolite/show/show_overview.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/excerpt.h"
#include "tavolite/show/show_fit.h"

namespace host {

namespace {

// Fills the column of every coefficient; false when the file has no such symbol or it is another
// size.
bool ReadColumn(TdxReader& reader, std::size_t column, std::int64_t limit,
                std::vector<CoefficientRow>& rows) {
  const TdxSymbolInfo* symbol = reader.Find(kCoefficientSymbols[column]);
  if (symbol == nullptr || symbol->dimension == 0) return false;
  const TdxRecords records = reader.Read(*symbol, limit);
  if (column == 0) rows.resize(records.values.size());
  if (records.values.size() != rows.size()) return false;
  for (std::size_t j = 0; j < rows.size(); ++j) {
    const auto keys = records.Keys(j);
    if (column == 0) rows[j].keys.assign(keys.begin(), keys.end());
    rows[j].values[column] = records.values[j];
  }
  return true;
}

// The records are level, the coefficient's keys, "LO" or "UP", a coefficient's eight together.
void ReadIntervals(TdxReader& reader, std::vector<CoefficientRow>& rows) {
  const TdxSymbolInfo* symbol = reader.Find("confint");
  if (symbol == nullptr || rows.empty()) return;
  if (symbol->dimension != static_cast<int>(rows[0].keys.size()) + 2) return;
  const TdxRecords records = reader.Read(*symbol);
  std::size_t j = 0;
  for (std::size_t i = 0; i + 1 < records.values.size(); i += 2) {
    const auto keys = records.Keys(i);
    const auto own = keys.subspan(1, keys.size() - 2);
    while (j < rows.size() && !std::ranges::equal(own, rows[j].keys)) ++j;
    if (j == rows.size()) return;
    rows[j].intervals.push_back({keys.front(), records.values[i], records.values[i + 1]});
  }
}

bool SameLevels(const CoefficientRow& a, const CoefficientRow& b) {
  return std::ranges::equal(a.intervals, b.intervals, {}, &ConfidenceInterval::level,
                            &ConfidenceInterval::level);
}

AlignedTable CoefficientTable(const std::vector<CoefficientRow>& rows,
                              const std::vector<std::size_t>& levels) {
  AlignedTable table;
  for (std::size_t k = 0; k < rows[0].keys.size(); ++k) {
    table.AddColumn("dim" + std::to_string(k + 1), AlignedTable::Side::kLeft);
  }
  for (const char* name : kCoefficientSymbols) table.AddColumn(name, AlignedTable::Side::kRight);
  for (const std::size_t level : levels) {
    table.AddColumn(rows[0].intervals[level].level + " LO", AlignedTable::Side::kRight);
    table.AddColumn(rows[0].intervals[level].level + " UP", AlignedTable::Side::kRight);
  }
  for (const CoefficientRow& row : rows) {
    std::vector<std::string> cells = row.keys;
    for (std::size_t k = 0; k < row.values.size(); ++k) {
      cells.push_back(k == kProbability ? ProbabilityCell(row.values[k], RoundedText)
                                        : RoundedText(row.values[k]));
    }
    for (const std::size_t level : levels) {
      cells.push_back(RoundedText(row.intervals[level].lower));
      cells.push_back(RoundedText(row.intervals[level].upper));
    }
    table.AddRow(std::move(cells));
  }
  return table;
}

// All levels when they fit, else the 95% one alone.
void PrintCoefficients(const std::vector<CoefficientRow>& rows, std::size_t width,
                       std::string& text) {
  std::vector<std::size_t> levels;
  std::vector<std::size_t> narrow;
  for (std::size_t m = 0; m < rows[0].intervals.size(); ++m) {
    levels.push_back(m);
    if (rows[0].intervals[m].level == "95%") narrow.push_back(m);
  }
  text += "\nCoefficients\n";
  const AlignedTable all = CoefficientTable(rows, levels);
  if (narrow.empty() || all.Width() <= width) {
    all.Print(text);
  } else {
    CoefficientTable(rows, narrow).Print(text);
  }
}

// What the file says of its run: nothing but what is there.
std::string JsonRunFacts(const RunFacts& run) {
  std::string text;
  if (!run.model.empty()) text += ",\"model\":" + JsonString(run.model);
  if (!run.response.empty()) text += ",\"response\":" + JsonString(run.response);
  if (!std::isnan(run.condition_number)) {
    text += ",\"condition_number\":" + JsonNumber(run.condition_number);
  }
  if (!run.warnings.empty()) text += ",\"warnings\":" + JsonStrings(run.warnings);
  if (!run.notes.empty()) text += ",\"notes\":" + JsonStrings(run.notes);
  return text;
}

std::string JsonCoefficient(const CoefficientRow& row) {
  std::string text = "{\"keys\":" + JsonStrings(row.keys);
  for (std::size_t k = 0; k < row.values.size(); ++k) {
    text += ',' + JsonString(kCoefficientSymbols[k]) + ':' +
            (k == kProbability ? JsonProbability(row.values[k]) : JsonNumber(row.values[k]));
  }
  text += ",\"confint\":{";
  for (const ConfidenceInterval& interval : row.intervals) {
    if (text.back() != '{') text += ',';
    text += JsonString(interval.level) + ":[" + JsonNumber(interval.lower) + ',' +
            JsonNumber(interval.upper) + ']';
  }
  return text + "}}";
}

}  // namespace

Overview ReadOverview(TdxReader& reader, std::int64_t limit) {
  Overview overview;
  for (const TdxSymbolInfo& symbol : reader.Symbols()) {
    if (symbol.dimension != 0) continue;
    const TdxRecords records = reader.Read(symbol);
    if (!records.values.empty()) overview.scalars.emplace_back(symbol.name, records.values[0]);
  }
  std::vector<CoefficientRow>& rows = overview.coefficients;
  for (std::size_t column = 0; column < kCoefficientSymbols.size(); ++column) {
    if (!ReadColumn(reader, column, limit, rows)) {
      rows.clear();
      return overview;
    }
  }
  ReadIntervals(reader, rows);
  const bool alike = std::ranges::all_of(
      rows, [&](const CoefficientRow& row) { return SameLevels(row, rows[0]); });
  if (!alike) {
    for (CoefficientRow& row : rows) row.intervals.clear();
  }
  return overview;
}

void PrintOverviewTable(TdxReader& reader, const Overview& overview, std::size_t width,
                        std::string& text) {
  const TdxHeader& header = reader.Header();
  text += Printable("Made by " + header.producer + " with " + header.library_version + ", " +
                    header.created) +
          '\n';
  PrintRunFacts(reader, text);
  text += "\nSymbols\n";
  AlignedTable symbols;
  symbols.AddColumn("name", AlignedTable::Side::kLeft);
  symbols.AddColumn("dimension", AlignedTable::Side::kRight);
  symbols.AddColumn("records", AlignedTable::Side::kRight);
  symbols.AddColumn("text", AlignedTable::Side::kLeft);
  for (const TdxSymbolInfo& symbol : reader.Symbols()) {
    symbols.AddRow({symbol.name, std::to_string(symbol.dimension), std::to_string(symbol.records),
                    symbol.text});
  }
  symbols.Print(text);
  if (!overview.scalars.empty()) {
    text += "\nScalars\n";
    AlignedTable scalars;
    scalars.AddColumn("", AlignedTable::Side::kLeft);
    scalars.AddColumn("", AlignedTable::Side::kLeft);
    for (const auto& [name, value] : overview.scalars) scalars.AddRow({name, NumberText(value)});
    scalars.Print(text);
  }
  if (!overview.coefficients.empty()) PrintCoefficients(overview.coefficients, width, text);
}

void PrintOverviewCsv(const TdxReader& reader, CsvCells cells, std::string& text) {
  text += "name,dimension,records,text\n";
  for (const TdxSymbolInfo& symbol : reader.Symbols()) {
    text += CsvField(symbol.name, cells) + ',' + std::to_string(symbol.dimension) + ',' +
            std::to_string(symbol.records) + ',' + CsvField(symbol.text, cells) + '\n';
  }
}

void PrintOverviewJson(const TdxReader& reader, const Overview& overview, std::string& text) {
  const TdxHeader& header = reader.Header();
  text += "{\"file\":{\"producer\":" + JsonString(header.producer) +
          ",\"library_version\":" + JsonString(header.library_version) +
          ",\"created\":" + JsonString(header.created) + JsonRunFacts(header.run) +
          "},\n\"symbols\":[";
  const char* separator = "\n";
  for (const TdxSymbolInfo& symbol : reader.Symbols()) {
    text += std::exchange(separator, ",\n");
    text += "{\"name\":" + JsonString(symbol.name) + ",\"text\":" + JsonString(symbol.text) +
            ",\"dimension\":" + std::to_string(symbol.dimension) +
            ",\"records\":" + std::to_string(symbol.records) + "}";
  }
  text += "\n],\n\"scalars\":{";
  separator = "";
  for (const auto& [name, value] : overview.scalars) {
    text += std::exchange(separator, ",");
    text += JsonString(name) + ":" + JsonNumber(value);
  }
  text += "},\n\"coefficients\":[";
  separator = "\n";
  for (const CoefficientRow& row : overview.coefficients) {
    text += std::exchange(separator, ",\n");
    text += JsonCoefficient(row);
  }
  text += "\n]}\n";
}

}  // namespace host
