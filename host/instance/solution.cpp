#include <string>

#include "instance/instance.h"
#include "instance/instance_check.h"
#include "instance/instance_tables.h"

namespace host {

namespace {

struct Counts {
  std::int64_t rows;
  std::int64_t columns;
};

Counts ReadCounts(Database& database) {
  Statement row(database, "SELECT row_count, column_count FROM model");
  if (!row.Step() || row.Int(0) < 0 || row.Int(0) > kMaxElements || row.Int(1) < 0 ||
      row.Int(1) > kMaxElements) {
    throw FileError("no usable model");
  }
  return {row.Int(0), row.Int(1)};
}

void WritePart(Database& database, const std::string& kind, const SolutionPart& part,
               std::int64_t count) {
  const auto elements = static_cast<std::size_t>(count);
  if (part.level.size() != elements || part.marginal.size() != elements ||
      part.basis.size() != elements || part.status.size() != elements) {
    throw FileError("the solution does not have one record per " + kind);
  }
  WriteArray(database, kind + "_level", part.level);
  WriteArray(database, kind + "_marginal", part.marginal);
  WriteArray(database, kind + "_basis", part.basis);
  WriteArray(database, kind + "_status", part.status);
}

SolutionPart ReadPart(Database& database, const std::string& kind, std::int64_t count) {
  SolutionPart part;
  part.level = ReadArray<double>(database, kind + "_level", count);
  part.marginal = ReadArray<double>(database, kind + "_marginal", count);
  part.basis = ReadArray<std::int32_t>(database, kind + "_basis", count);
  part.status = ReadArray<std::int32_t>(database, kind + "_status", count);
  return part;
}

// An undefined value is NULL: SQLite has no NaN.
void WriteHeadAndTail(Database& database, const std::map<std::int32_t, double>& values) {
  database.Execute("DELETE FROM head_and_tail");
  Statement insert(database, "INSERT INTO head_and_tail VALUES(?, ?)");
  for (const auto& [code, value] : values) {
    insert.Bind(1, std::int64_t{code}).Bind(2, value).Run();
  }
}

// Runs `step` on the instance; a failure of the database becomes a FileError that names the file.
template <class Step>
void WithInstance(const std::filesystem::path& file, Database::Mode mode, Step step) {
  Database database = OpenInstance(file, mode);
  try {
    InContext(Utf8(file), [&] { step(database); });
  } catch (const DatabaseError& error) {
    throw FileError(error.what());
  }
}

}  // namespace

void WriteSolution(const Solution& solution, const std::filesystem::path& instance) {
  WithInstance(instance, Database::Mode::kReadWrite, [&](Database& database) {
    // An interrupted process leaves a journal behind that takes the transaction back; the
    // machine's own end may lose the whole solve anyway.
    database.Execute("PRAGMA synchronous = OFF; BEGIN IMMEDIATE; DELETE FROM solution;");
    const Counts counts = ReadCounts(database);
    WritePart(database, "row", solution.rows, counts.rows);
    WritePart(database, "column", solution.columns, counts.columns);
    WriteHeadAndTail(database, solution.head_and_tail);
    Statement insert(database, "INSERT INTO solution VALUES(?, ?)");
    insert.Bind(1, std::int64_t{solution.model_status})
        .Bind(2, std::int64_t{solution.solve_status})
        .Run();
    database.Execute("COMMIT");
  });
}

std::optional<Solution> ReadSolution(const std::filesystem::path& instance) {
  std::optional<Solution> result;
  WithInstance(instance, Database::Mode::kRead, [&](Database& database) {
    Statement head(database, "SELECT model_status, solve_status FROM solution");
    if (!head.Step()) {
      return;
    }
    Solution solution;
    solution.model_status = static_cast<std::int32_t>(head.Int(0));
    solution.solve_status = static_cast<std::int32_t>(head.Int(1));
    const Counts counts = ReadCounts(database);
    solution.rows = ReadPart(database, "row", counts.rows);
    solution.columns = ReadPart(database, "column", counts.columns);
    Statement value(database, "SELECT code, value FROM head_and_tail");
    while (value.Step()) {
      solution.head_and_tail[static_cast<std::int32_t>(value.Int(0))] =
          value.IsNull(1) ? std::numeric_limits<double>::quiet_NaN() : value.Real(1);
    }
    result = std::move(solution);
  });
  return result;
}

}  // namespace host
