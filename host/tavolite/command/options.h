// What the user of the command asks for: the command line fills one of these records, everything
// else reads it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace host {

enum class InputFormat { kMathProg, kMps, kFreeMps, kFixedMps, kLp, kCsv, kTsv, kSqlite };

// On which side of the equality sign a model has its data: `y = sum x*b` or `sum x*b = y`.
enum class DataSide { kLeft, kRight };

enum class Intercept { kAutomatic, kAlways, kNever };

// Column names may come several in one text, joined by commas.
struct TableOptions {
  std::string response;
  std::vector<std::string> regressors;  // empty: every column that is nothing else
  std::vector<std::string> drop;
  std::vector<std::string> labels;
  std::vector<std::string> factors;
  Intercept intercept = Intercept::kAutomatic;
  std::optional<char> separator;  // of a text table's fields; none: the format's
  std::string query;              // that gives the table, for SQLite files
};

struct SolveOptions {
  std::filesystem::path input{};  // a model or a table
  InputFormat format = InputFormat::kMathProg;
  std::filesystem::path data{};         // MathProg data file, may be empty
  std::optional<DataSide> data_side{};  // none: read off MathProg, right for others
  bool split_underscores = false;       // MPS and LP: name_1 is `name` with the label 1
  TableOptions table;
  std::filesystem::path option_file{};  // the solver's; empty: none
  std::filesystem::path work{};  // where the scratch directory is made; empty: the system's place
  std::filesystem::path results{};  // empty: the option file's, else the solver's default
  std::filesystem::path listing{};  // empty: the input's name with .lst, in the current directory
  std::filesystem::path report{};   // takes a page with tables and figures; empty: none
  std::filesystem::path solver{};   // empty: beside this program
  std::filesystem::path timing{};   // takes the seconds of each step; empty: none
  bool keep = false;                // the scratch directory stays
  bool quiet = false;               // warnings and errors only
};

enum class ShowFormat { kTable, kCsv, kJson, kHtml };
enum class ShowPart { kCoefficients, kFit };
enum class CsvCells { kGuarded, kRaw };

struct ShowOptions {
  std::filesystem::path file{};
  std::string symbol{};            // empty: an overview of the file
  std::optional<ShowPart> part{};  // of a regression; none: symbol or overview
  double level = 95.0;             // of the coefficients' limits, in percent
  ShowFormat format = ShowFormat::kTable;
  CsvCells csv_cells = CsvCells::kGuarded;  // raw: also what a spreadsheet would run
  std::int64_t limit = -1;         // records of a symbol, coefficients of the overview; -1: all
  std::filesystem::path output{};  // empty: standard output
  std::size_t width = 0;           // columns of the terminal; 0: found out
};

}  // namespace host
