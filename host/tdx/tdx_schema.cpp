#include "tdx/tdx_schema.h"

#include <set>

#include "base/text.h"

namespace host {

namespace {

std::string RecordQuery(std::size_t symbol, int dimension, const char* join) {
  std::string columns;
  std::string joins;
  for (int k = 1; k <= dimension; ++k) {
    const std::string label = TdxLabelColumn(k);
    columns += label + ".label AS dim" + std::to_string(k) + ", ";
    joins += std::string(" ") + join + " tdx_label AS " + label + " ON " + label + ".number = d." +
             label;
  }
  return "SELECT " + columns + "d.value AS value FROM " + TdxDataTable(symbol) + " AS d" + joins +
         " ORDER BY d.record";
}

}  // namespace

const char* const kTdxTables =
    "CREATE TABLE tdx_file(schema_version INTEGER NOT NULL, producer TEXT NOT NULL,"
    " library_version TEXT NOT NULL, created TEXT NOT NULL, process INTEGER, model TEXT,"
    " response TEXT, condition_number REAL, warnings TEXT, notes TEXT);"
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

std::string TdxViewDefinition(std::string_view view, std::size_t symbol, int dimension) {
  // CROSS JOIN keeps the records in the outer loop, so that they come in their order without a
  // sort.
  return "CREATE VIEW " + QuotedName(view) + " AS " + RecordQuery(symbol, dimension, "CROSS JOIN");
}

std::string TdxRecordQuery(std::size_t symbol, int dimension) {
  return RecordQuery(symbol, dimension, "LEFT JOIN");
}

// Names that are kept get "symbol_" in front, and underscores behind until nothing else has them.
std::vector<std::string> TdxViewNames(const std::vector<TdxSymbolInfo>& symbols) {
  std::set<std::string> taken;
  for (const TdxSymbolInfo& symbol : symbols) taken.insert(LowerCase(symbol.name));
  std::vector<std::string> views;
  for (const TdxSymbolInfo& symbol : symbols) {
    std::string view = symbol.name;
    const std::string folded = LowerCase(view);
    if (folded.starts_with("tdx_") || folded.starts_with("sqlite_")) {
      view.insert(0, "symbol_");
      while (!taken.insert(LowerCase(view)).second) view += '_';
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

bool IsSameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && LowerCase(a) == LowerCase(b);
}

}  // namespace host
