#include "tdx/tdx_schema.h"

#include <algorithm>
#include <set>

namespace host {

namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

const char* const kTdxTables =
    "CREATE TABLE tdx_file(schema_version INTEGER NOT NULL, producer TEXT NOT NULL,"
    " library_version TEXT NOT NULL, created TEXT NOT NULL);"
    "CREATE TABLE tdx_symbol(number INTEGER PRIMARY KEY, name TEXT NOT NULL, text TEXT NOT NULL,"
    " dimension INTEGER NOT NULL, type INTEGER NOT NULL, user_info INTEGER NOT NULL,"
    " records INTEGER NOT NULL, view TEXT NOT NULL);"
    "CREATE TABLE tdx_label(number INTEGER PRIMARY KEY, label TEXT NOT NULL);";

std::string TdxDataTable(std::size_t symbol) {
  return "tdx_data_" + std::to_string(symbol);
}

std::string TdxLabelColumn(int k) {
  return "label" + std::to_string(k);
}

std::string TdxDataTableDefinition(std::size_t symbol, int dimension) {
  std::string labels;
  for (int k = 1; k <= dimension; ++k) labels += TdxLabelColumn(k) + " INTEGER NOT NULL, ";
  return "CREATE TABLE " + TdxDataTable(symbol) + "(record INTEGER PRIMARY KEY, " + labels +
         "value REAL)";
}

// CROSS JOIN keeps the records in the outer loop, so that they come in their order without a sort.
std::string TdxViewDefinition(std::string_view view, std::size_t symbol, int dimension) {
  std::string columns;
  std::string joins;
  for (int k = 1; k <= dimension; ++k) {
    const std::string label = TdxLabelColumn(k);
    columns += label + ".label AS dim" + std::to_string(k) + ", ";
    joins += " CROSS JOIN tdx_label AS " + label + " ON " + label + ".number = d." + label;
  }
  return "CREATE VIEW " + QuotedName(view) + " AS SELECT " + columns + "d.value AS value FROM " +
         TdxDataTable(symbol) + " AS d" + joins + " ORDER BY d.record";
}

// Names that are kept get "symbol_" in front, and underscores behind until nothing else has them.
std::vector<std::string> TdxViewNames(const std::vector<TdxSymbolInfo>& symbols) {
  std::set<std::string> taken;
  for (const TdxSymbolInfo& symbol : symbols) taken.insert(FoldedName(symbol.name));
  std::vector<std::string> views;
  for (const TdxSymbolInfo& symbol : symbols) {
    std::string view = symbol.name;
    const std::string folded = FoldedName(view);
    if (folded.starts_with("tdx_") || folded.starts_with("sqlite_")) {
      view.insert(0, "symbol_");
      while (!taken.insert(FoldedName(view)).second) view += '_';
    }
    views.push_back(view);
  }
  return views;
}

std::string QuotedName(std::string_view name) {
  std::string quoted(1, '"');
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted += '"';
}

std::string FoldedName(std::string_view name) {
  std::string folded(name);
  std::ranges::transform(folded, folded.begin(), Lower);
  return folded;
}

bool IsSameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, Lower, Lower);
}

}  // namespace host
