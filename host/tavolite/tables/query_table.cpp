#include "tavolite/tables/query_table.h"

#include <cmath>

#include "base/excerpt.h"
#include "base/input_error.h"
#include "base/text.h"
#include "base/text_file.h"
#include "tavolite/system/progress.h"
#include "tavolite/tables/number.h"

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
  QueryReader(Statement& statement, const TablePlan& plan, TableRows& rows)
      : statement_(statement), plan_(plan), rows_(rows) {}

  void Run(Progress& progress) {
    RowBatch batch;
    batch.Start(plan_, kBatchRows);
    while (statement_.Step()) {
      Row(batch);
      if (!batch.error.empty() || batch.rows == kBatchRows) {
        rows_.Append(batch);
        batch.Start(plan_, kBatchRows);
        progress.Update(-1.0);
      }
    }
    rows_.Append(batch);
  }

 private:
  void Row(RowBatch& batch) {
    bool complete = true;
    int column = 0;
    for (const ColumnUse& use : plan_.columns) {
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
    batch.Number(use.number)[batch.rows] = number.value;
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
  const TablePlan& plan_;
  TableRows& rows_;
};

}  // namespace

QueryTable::QueryTable(const std::filesystem::path& file, const std::string& query, bool progress)
    : name_(Utf8(file)),
      database_(file, Database::Mode::kRead),
      statement_(database_, query, &rest_),
      progress_(progress) {
  CheckStatement(statement_, rest_, name_ + ": ");
}

TableHeader QueryTable::ReadHeader() const {
  TableHeader header{.names = {}, .where = name_ + ": "};
  for (int i = 0; i < statement_.Columns(); ++i) {
    header.names.emplace_back(statement_.ColumnName(i));
  }
  return header;
}

TableRows QueryTable::ReadRows(const TablePlan& plan) {
  TableRows rows(plan, name_, /*by_line=*/false);
  Progress progress("reading " + name_, progress_);
  QueryReader(statement_, plan, rows).Run(progress);
  return rows;
}

}  // namespace host
