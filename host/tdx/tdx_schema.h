// The names, numbers and limits of the results file's format, for its writer and its reader. The
// format itself is described in docs/tdx-file.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace host {

inline constexpr std::int32_t kTdxApplicationId = 0x54445846;  // "TDXF"
inline constexpr int kTdxSchemaVersion = 1;                    // also the pragma user_version
inline constexpr std::size_t kMaxTdxNameLength = 63;  // of a symbol's name or a label, in bytes
inline constexpr int kMaxTdxDimension = 20;
inline constexpr int kTdxParameter = 1;  // the only type of symbol

struct TdxSymbolInfo {
  std::string name;
  std::string text;
  int dimension = 0;
  int type = kTdxParameter;
  int user_info = 0;
  std::int64_t records = 0;
  std::string view{};
  std::size_t number = 0;  // in its file, from 1
};

// What the host knows about a run and the results-file library doesn't.
struct RunFacts {
  std::string model;     // its name, or that of the table
  std::string response;  // the dependent variable
  double condition_number = std::numeric_limits<double>::quiet_NaN();  // undefined: not known
  std::vector<std::string> warnings{};
  std::vector<std::string> notes{};  // what was assumed or left out
};

// The statements that make the tables which every file has.
extern const char* const kTdxTables;

// The table of a symbol's records, by the symbol's number.
std::string TdxDataTable(std::size_t symbol);
// "label1" and so on: the columns of a record's labels in that table.
std::string TdxLabelColumn(int k);
// The statements that make a symbol's table of records and its view.
std::string TdxDataTableDefinition(std::size_t symbol, int dimension);
std::string TdxViewDefinition(std::string_view view, std::size_t symbol, int dimension);
// The statement that gives a symbol's records in their order: the labels, then the value. A label
// that tdx_label lacks is NULL.
std::string TdxRecordQuery(std::size_t symbol, int dimension);
// The names of the symbols' views: those of the symbols, but for names that SQLite or the format
// keep for themselves.
std::vector<std::string> TdxViewNames(const std::vector<TdxSymbolInfo>& symbols);

// In double quotes, as SQL and messages have names.
std::string QuotedName(std::string_view name);
// Names that differ in the case of their (ASCII) letters only are one name, as in SQL.
bool IsSameName(std::string_view a, std::string_view b);

}  // namespace host
