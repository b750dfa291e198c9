#include "tavolite/tables/read_table.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "base/database.h"
#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/tables/query_table.h"
#include "tavolite/tables/text_table.h"

namespace host {
namespace {

template <class Table>
TableModel Read(Table& table, const TableOptions& options) {
  const TableHeader header = table.ReadHeader();
  const TablePlan plan = MakeTablePlan(header, options);
  return MakeTableModel(plan, table.ReadRows(plan), options.intercept);
}

TableModel ReadTextFile(const SolveOptions& options) {
  const std::string name = Utf8(options.input);
  std::error_code code;
  if (std::filesystem::is_directory(options.input, code)) {
    throw InputError(name + ": is a directory");
  }
  std::ifstream stream;
  stream.rdbuf()->pubsetbuf(nullptr, 0);  // blocks are read as they are
  stream.open(options.input, std::ios::binary);
  if (!stream) throw InputError(name + ": can't be opened");
  const std::uintmax_t size = std::filesystem::file_size(options.input, code);
  const char usual = options.format == InputFormat::kTsv ? '\t' : ',';
  TextTable table({.stream = &stream,
                   .name = name,
                   .size = code ? 0 : size,
                   .separator = options.table.separator.value_or(usual),
                   .progress = !options.quiet});
  return Read(table, options.table);
}

TableModel ReadDatabase(const SolveOptions& options) {
  try {
    QueryTable table(options.input, options.table.query, !options.quiet);
    TableModel made = Read(table, options.table);
    const std::vector<std::string> notes = table.Notes();
    made.notes.insert(made.notes.begin(), notes.begin(), notes.end());
    return made;
  } catch (const DatabaseError& error) {
    throw InputError(error.what());
  }
}

}  // namespace

TableModel ReadTable(const SolveOptions& options) {
  TableModel made =
      options.format == InputFormat::kSqlite ? ReadDatabase(options) : ReadTextFile(options);
  made.model.name = Utf8(options.input.stem());
  return made;
}

}  // namespace host
