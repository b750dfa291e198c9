#include "tavolite/tables/table_database.h"

#include <cmath>

#include "base/database.h"
#include "base/excerpt.h"
#include "base/input_error.h"
#include "base/text.h"
#include "base/text_file.h"
#include "tavolite/system/progress.h"
#include "tavolite/tables/table_number.h"

namespace host {

namespace {

constexpr std::size_t kBatchRows = 4096;

void CheckStatement(const Statement& statement, std::string_view rest, const std::string& where) {
  if (statement.Columns() == 0) {
    throw InputError(where + "the query gives no rows (it must be a SELECT)");
  }
  if (rest.find_first_not_of(" \t\r\n;") != std::string_view::npos) {
    throw InputError(where + "--query holds more than one statement");
  }
  if (statement.Columns() < 2) {
    throw InputError(where + "the query gives only one column");
  }
}

class QueryReader {
 public:
  QueryReader(Statement& statement, Table& table) : statement_(statement), table_(table) {}

  void Run(Progress& progress) {
    RowBatch batch;
    batch.Start(table_.plan, kBatchRows);
    while (statement_.Step()) {
      Row(batch);
      if (!batch.error.empty() || batch.rows == kBatchRows) {
        table_.data.Append(batch);
        batch.Start(table_.plan, kBatchRows);
        progress.Update(-1.0);
      }
    }
    table_.data.Append(batch);
  }

 private:
  void Row(RowBatch& batch) {
    bool complete = true;
    int column = 0;
    for (const ColumnUse& use : table_.plan.columns) {
      if (use.number >= 0) {
        complete = Number(use, column, batch) && complete;
      }
      if (use.text >= 0) {
        complete = Text(use, column, batch) && complete;
      }
      if (!batch.error.empty()) {
        return;
      }
      ++column;
    }
    batch.EndRow(complete, batch.rows_read);
    batch.lines_read = batch.rows_read;
  }

  // These give false for a missing value.
  bool Number(const ColumnUse& use, int column, RowBatch& batch) {
    ParsedNumber number;
    switch (statement_.Type(column)) {
      case SQLITE_NULL:
        return false;
      case SQLITE_INTEGER:
      case SQLITE_FLOAT:
        number = {.kind = NumberKind::kNumber, .value = statement_.Real(column)};
        number.kind = std::isfinite(number.value) ? number.kind : NumberKind::kInfinite;
        break;
      case SQLITE_TEXT:
        number = ParseNumber(statement_.Text(column));
        break;
      default:
        batch.error = "column \"" + Excerpt(use.name) + "\" holds a blob";
        return false;
    }
    if (number.kind == NumberKind::kMissing) {
      return false;
    }
    if (number.kind != NumberKind::kNumber) {
      batch.error = NumberFault(use, statement_.Text(column), number.kind);
      return false;
    }
    batch.Number(use.number)[batch.rows] = -number.value;
    return true;
  }

  bool Text(const ColumnUse& use, int column, RowBatch& batch) {
    if (statement_.Type(column) == SQLITE_BLOB) {
      batch.error = "column \"" + Excerpt(use.name) + "\" holds a blob";
      return false;
    }
    std::string_view text = statement_.Text(column);
    text = StrippedEnd(text);
    if (text.empty()) {
      return false;
    }
    batch.error = TextFault(use, text);
    batch.SetText(use.text, batch.Keep(std::string(text)));
    return true;
  }

  Statement& statement_;
  Table& table_;
};

}  // namespace

Table ReadQuery(const std::filesystem::path& file, const TableOptions& options, bool progress) {
  const std::string where = Utf8(file) + ": ";
  try {
    Database database(file, Database::Mode::kRead);
    std::string_view rest;
    Statement statement(database, options.query, &rest);
    CheckStatement(statement, rest, where);
    std::vector<std::string> names;
    for (int i = 0; i < statement.Columns(); ++i) {
      names.emplace_back(statement.ColumnName(i));
    }
    TablePlan plan = MakeTablePlan(names, options, where);
    TableData data(plan, Utf8(file), /*by_line=*/false);
    Table table{.plan = std::move(plan), .data = std::move(data)};
    Progress shown("reading " + Utf8(file), progress);
    QueryReader(statement, table).Run(shown);
    return table;
  } catch (const DatabaseError& error) {
    throw InputError(error.what());
  }
}

}  // namespace host
