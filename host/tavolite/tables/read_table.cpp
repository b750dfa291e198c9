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
TableModel Read(Table& table, const TableOptions& options, const std::filesystem::path& instance) {
  const TableHeader header = table.ReadHeader();
  const TablePlan plan = MakeTablePlan(header, options);
  return MakeTableModel(plan, table.ReadRows(plan, instance), options.intercept);
}

TableModel ReadTextFile(const SolveOptions& options, const std::filesystem::path& instance) {
  const TableStream input = OpenTable(options);
  const char usual = options.format == InputFormat::kTsv ? '\t' : ',';
  TextTable table({.stream = input.stream.get(),
                   .name = InputName(options.input),
                   .size = input.size,
                   .separator = options.table.separator.value_or(usual),
                   .progress = !options.quiet});
  return Read(table, options.table, instance);
}

TableModel ReadDatabase(const SolveOptions& options, const std::filesystem::path& instance) {
  try {
    QueryTable table(options.input, options.table.query, !options.quiet);
    TableModel made = Read(table, options.table, instance);
    const std::vector<std::string> notes = table.Notes();
    made.notes.insert(made.notes.begin(), notes.begin(), notes.end());
    return made;
  } catch (const DatabaseError& error) {
    throw InputError(error.what());
  }
}

}  // namespace

TableModel ReadTable(const SolveOptions& options, const std::filesystem::path& instance) {
  TableModel made = options.format == InputFormat::kSqlite ? ReadDatabase(options, instance)
                                                           : ReadTextFile(options, instance);
  made.model.name = ModelName(options.input);
  return made;
}

}  // namespace host
