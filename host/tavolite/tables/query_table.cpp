#include "tavolite/tables/query_table.h"

#include <cctype>
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

// Where the text or the quoted name at the start of `sql` ends.
std::size_t QuotedLength(std::string_view sql) {
  const std::size_t end = sql.find(sql.front(), 1);
  return end == std::string_view::npos ? sql.size() : end + 1;
}

bool IsNameCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Whether what follows the opening bracket is one argument.
bool HasOneArgument(std::string_view sql) {
  int depth = 0;
  for (std::size_t i = 0; i < sql.size(); ++i) {
    if (sql[i] == '\'' || sql[i] == '"') {
      i += QuotedLength(sql.substr(i)) - 1;
    } else if (sql[i] == '(') {
      ++depth;
    } else if (sql[i] == ')' && depth-- == 0) {
      return true;
    } else if (sql[i] == ',' && depth == 0) {
      return false;
    }
  }
  return true;
}

bool CallsCommonLogarithm(std::string_view sql) {
  constexpr std::string_view kName = "log";
  for (std::size_t i = 0; i < sql.size();) {
    if (sql[i] == '\'' || sql[i] == '"') {
      i += QuotedLength(sql.substr(i));
      continue;
    }
    if (!IsNameCharacter(sql[i])) {
      ++i;
      continue;
    }
    const std::size_t begin = i;
    while (i < sql.size() && IsNameCharacter(sql[i])) ++i;
    const std::size_t bracket = sql.find_first_not_of(" \t\r\n", i);
    if (LowerCase(sql.substr(begin, i - begin)) == kName && bracket != std::string_view::npos &&
        sql[bracket] == '(' && HasOneArgument(sql.substr(bracket + 1))) {
      return true;
    }
  }
  return false;
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
      query_(query),
      database_(file, Database::Mode::kRead),
      statement_(database_, query, &rest_),
      progress_(progress) {
  CheckStatement(statement_, rest_, name_ + ": ");
}

std::vector<std::string> QueryTable::Notes() const {
  if (!CallsCommonLogarithm(query_)) return {};
  return {"log() in the query is the logarithm to the base 10; the natural one is ln()"};
}

TableHeader QueryTable::ReadHeader() const {
  TableHeader header{.names = {}, .where = name_ + ": "};
  for (int i = 0; i < statement_.Columns(); ++i) {
    header.names.emplace_back(statement_.ColumnName(i));
  }
  return header;
}

TableRows QueryTable::ReadRows(const TablePlan& plan, const std::filesystem::path& instance) {
  TableRows rows(plan, name_, /*rows_by_line=*/false, instance);
  Progress progress("reading " + name_, progress_);
  QueryReader(statement_, plan, rows).Run(progress);
  return rows;
}

}  // namespace host
