#include "tavolite/command/solve_check.h"

#include <system_error>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/command/input_format.h"

namespace host {
namespace {

namespace fs = std::filesystem;

void CheckInputFile(const fs::path& file) {
  std::error_code none;
  if (!fs::exists(file, none)) throw InputError(Utf8(file) + ": there is no such file");
  if (fs::is_directory(file, none)) throw InputError(Utf8(file) + ": is a directory");
}

InputFormat ChooseFormat(const SolveOptions& options, std::optional<InputFormat> stated) {
  const bool is_text = stated == InputFormat::kCsv || stated == InputFormat::kTsv;
  if (IsStandardInput(options.input) && !is_text) {
    throw InputError("standard input gives tables: it needs --format csv or --format tsv");
  }
  if (IsPacked(options.input) && stated && !is_text) {
    throw InputError(Utf8(options.input) + ": only tables of lines are read packed: unpack it");
  }
  if (stated) return *stated;
  if (const std::optional<InputFormat> format = InputFormatOf(options.input)) return *format;
  if (!options.table.query.empty()) return InputFormat::kSqlite;
  if (IsSpreadsheet(options.input)) {
    throw InputError(Utf8(options.input) + ": is a spreadsheet: save the sheet as CSV");
  }
  throw InputError(Utf8(options.input) + ": the suffix does not tell the format (known are " +
                   KnownSuffixes() + "): give it with --format");
}

void CheckForTable(const SolveOptions& options, InputFormat format) {
  if (!options.data.empty() || options.data_side || options.split_underscores) {
    throw InputError("--data, --data-side and --split-underscores are not for tables");
  }
  const bool is_database = format == InputFormat::kSqlite;
  if (is_database && options.table.query.empty()) {
    throw InputError(Utf8(options.input) + ": an SQLite file needs --query");
  }
  if (!is_database && !options.table.query.empty()) {
    throw InputError("--query is for SQLite files only");
  }
}

void CheckForModel(const SolveOptions& options, InputFormat format) {
  const TableOptions& table = options.table;
  if (!table.response.empty() || !table.regressors.empty() || !table.drop.empty() ||
      !table.labels.empty() || !table.factors.empty() || !table.query.empty() || table.separator ||
      table.intercept != Intercept::kAutomatic) {
    throw InputError(Utf8(options.input) + ": this is a model; the options for tables don't apply");
  }
  const bool is_mathprog = format == InputFormat::kMathProg;
  if (!options.data.empty() && !is_mathprog) throw InputError("--data is for MathProg models only");
  if (options.split_underscores && is_mathprog) {
    throw InputError("--split-underscores is for MPS and LP models only");
  }
}

}  // namespace

InputFormat CheckSolve(const SolveOptions& options, std::optional<InputFormat> stated) {
  // That a file is not there says more than its suffix would.
  if (!IsStandardInput(options.input)) CheckInputFile(options.input);
  for (const fs::path& file : {options.data, options.option_file}) {
    if (!file.empty()) CheckInputFile(file);
  }
  const InputFormat format = ChooseFormat(options, stated);
  (IsTable(format) ? CheckForTable : CheckForModel)(options, format);
  return format;
}

}  // namespace host
