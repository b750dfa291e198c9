#include "tavolite/tables/read_table.h"

#include <string>
#include <vector>

#include "base/database.h"
#include "base/input_error.h"
#include "tavolite/command/input_format.h"
#include "tavolite/tables/query_table.h"
#include "tavolite/tables/table_stream.h"
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
  const TableStream input = OpenTable(options);
  const char usual = options.format == InputFormat::kTsv ? '\t' : ',';
  TextTable table({.stream = input.stream.get(),
                   .name = InputName(options.input),
                   .size = input.size,
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
  made.model.name = ModelName(options.input);
  return made;
}

}  // namespace host
